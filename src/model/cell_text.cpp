#include "model/cell_text.h"

#include <cctype>
#include <charconv>

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The power of ten just above an unsigned number that is not 0 in digits, to tell too large from too small.
double DecimalMagnitude(std::string_view number) {
  const std::size_t e = number.find_first_of("eE");
  const std::string_view digits = number.substr(0, e);
  double exponent = 0;
  if (e != std::string_view::npos) {
    const std::string_view power = number.substr(e + 1);
    for (const char c : power) {
      if (IsDigit(c)) exponent = exponent * 10 + (c - '0');
    }
    if (power.front() == '-') exponent = -exponent;
  }
  const std::size_t first = digits.find_first_not_of("0.");
  if (first == std::string_view::npos) return -1;
  const std::size_t dot = digits.find('.');
  const double point = static_cast<double>(dot == std::string_view::npos ? digits.size() : dot);
  return point - static_cast<double>(first) + exponent;
}

const char* BooleanText(bool value) {
  return value ? "True" : "False";
}

}  // namespace

std::string UpperTrim(std::string_view text) {
  return Trim(UpperCase(text));
}

std::string RepairMinus(std::string_view text) {
  std::string out(text);
  for (std::size_t minus = out.find('-'); minus != std::string::npos; minus = out.find('-', minus + 1)) {
    const std::size_t next = out.find_first_not_of(' ', minus + 1);
    if (next == std::string::npos || next == minus + 1) continue;
    const char c = out[next];
    if ((c >= '+' && c <= '.') || IsDigit(c)) out.erase(minus + 1, next - minus - 1);
  }
  return out;
}

std::string NormaliseNameSeparators(std::string_view text, std::string& separator) {
  std::string out = SoftBlanks(text);
  for (char& c : out) {
    if (c == ';' || c == '%' || c == '$' || c == '@') c = '|';
  }
  separator = "|";
  return out;
}

void SplitTwoNames(std::string_view cell, std::string& first, std::string& second) {
  std::string separator;
  const std::string text = NormaliseNameSeparators(cell, separator);
  const std::size_t bar = text.find(separator);
  if (bar == std::string::npos) {
    first = Trim(text);
    second.clear();
    return;
  }
  first = Trim(std::string_view(text).substr(0, bar));
  second = Trim(std::string_view(text).substr(bar + 1));
}

std::string CleanFileName(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c != '\\' && c != '/' && c != ':' && c != '@' && c != '|') out.push_back(c);
  }
  return out;
}

std::size_t NextWordEnd(std::size_t position, std::string_view text) {
  return position == 0 ? CharacterCount(text) + 1 : position;
}

double LeadingNumber(std::string_view text) {
  std::size_t end = 0;
  if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
  const std::size_t mantissa = end;
  std::size_t digits = 0;
  while (end < text.size() && IsDigit(text[end])) ++end, ++digits;
  if (end < text.size() && text[end] == '.') {
    ++end;
    while (end < text.size() && IsDigit(text[end])) ++end, ++digits;
  }
  if (digits == 0) return 0;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (exponent < text.size() && IsDigit(text[exponent])) {
      while (exponent < text.size() && IsDigit(text[exponent])) ++exponent;
      end = exponent;
    }
  }
  double value = 0;
  const auto result = std::from_chars(text.data() + mantissa, text.data() + end, value);
  if (result.ec == std::errc::result_out_of_range) {
    if (DecimalMagnitude(text.substr(mantissa, end - mantissa)) > 0) Raise(FailureNumber::Overflow);
    return 0;
  }
  return text[0] == '-' ? -value : value;
}

std::string TextForAnyLocale(const std::string& number, const Locale& locale) {
  const std::size_t dot = number.find('.');
  if (locale.thousandSeparator != "." || dot == std::string::npos) return number;
  const std::size_t decimals = number.size() - dot - 1;
  std::string text = number.substr(0, dot) + number.substr(dot + 1);
  if (decimals > 0) text += "E-" + std::to_string(decimals);
  return text;
}

double CellText::ReadNumber(std::string_view text) {
  std::string kept = Trim(text);
  if (kept.empty()) return 0;
  kept = ReplaceAll(SoftBlanks(kept), " ", "");
  const std::string& thousands = locale_.thousandSeparator;
  if (!thousands.empty() && Contains(kept, thousands)) {
    if (thousands == "." && !thousandsDotLogged_) {
      thousandsDotLogged_ = true;
      prompt_("_The dot is the thousands separator of the locale in use: " + kept + " is read without its dots");
    }
    kept = ReplaceAll(kept, thousands, "");
  }
  std::string unquoted = kept;
  if (StartsWith(unquoted, "\"")) unquoted.erase(0, 1);
  if (!unquoted.empty() && unquoted.back() == '"') unquoted.pop_back();
  double value = 0;
  try {
    value = Contains(unquoted, ",") ? ReadWithCommas(kept, unquoted) : LeadingNumber(unquoted);
  } catch (const RuntimeFailure& failure) {
    prompt_.dialogs().Tell(failure.description(), "ERROR n° " + std::to_string(static_cast<int>(failure.number())),
                           Icon::Critical);
  }
  return value;
}

double CellText::ReadPointNumber(std::string_view text) {
  if (locale_.thousandSeparator != "." || Contains(text, ",")) return ReadNumber(text);
  CellText pointReader(prompt_, Locale{locale_.decimalSeparator, ""});
  return pointReader.ReadNumber(text);
}

double CellText::ReadNumberAt(std::string_view text, const std::string& place) {
  const double value = ReadNumber(text);
  if (value == 0 && !Trim(text).empty() && text.find_first_of("0123456789") == std::string_view::npos) {
    prompt_("_" + place + ": \"" + std::string(text) + "\" is no number and reads as 0");
  }
  return value;
}

double CellText::ReadWithCommas(const std::string& kept, const std::string& unquoted) {
  const std::size_t comma = unquoted.find(',');
  const bool hasDot = Contains(unquoted, ".");
  const bool moreCommas = unquoted.find(',', comma + 1) != std::string::npos;
  if (moreCommas || hasDot) return LeadingNumber(ReplaceAll(kept, ",", ""));
  // The place comes from the unquoted text, the length from the quoted one: a quoted text counts differently.
  const std::size_t behind = CharacterCount(kept) - CharacterCount(unquoted.substr(0, comma)) - 1;
  const bool decimal = behind != 3 || locale_.decimalSeparator == ",";
  return LeadingNumber(ReplaceAll(kept, ",", decimal ? "." : ""));
}

void CellText::CleanNumberLine(std::string& text) {
  text = Trim(SoftBlanks(Trim(text)));
  text = Trim(ReplaceAll(text, ";", " "));
  if (commaDecimal_ == 1) return;
  long count = 0;
  bool allBetweenDigits = true;
  for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', comma + 1)) {
    ++count;
    ++commaCount_;
    const bool between = comma > 0 && comma + 1 < text.size() && IsDigit(text[comma - 1]) && IsDigit(text[comma + 1]);
    allBetweenDigits = allBetweenDigits && between;
    if (commaCount_ == 1) {
      prompt_("_ string: " + text + " has " + std::to_string(count) + " comma, but seems used as decimal " +
              BooleanText(allBetweenDigits) +
              " . Next time think to check the Excel sheet and replace all commas by dots to not get such warning");
    }
  }
  if (!allBetweenDigits) text = Trim(ReplaceAll(text, ",", " "));
}

void CellText::NotePlace(const std::string& what) {
  if (!place_.empty()) prompt_("_" + place_ + ": " + what);
}

void CellText::NoteWordWithoutNumber(std::string_view word, double value) {
  if (value != 0 || place_.empty() || word.find_first_of("0123456789") != std::string_view::npos) return;
  NotePlace("\"" + std::string(word) + "\" is no number and reads as 0");
}

void CellText::SplitNumbers(std::string& text, std::vector<double>& values, int& count, int first, bool tolerant) {
  const std::string original = text;
  CleanNumberLine(text);
  int index = first - 1;
  const auto store = [&](double value) {
    ++index;
    if (index < 0 || static_cast<std::size_t>(index) >= kMaxList) Raise(FailureNumber::SubscriptOutOfRange);
    if (values.size() <= static_cast<std::size_t>(index)) values.resize(static_cast<std::size_t>(index) + 1);
    values[static_cast<std::size_t>(index)] = value;
  };
  for (;;) {
    const std::size_t blank = text.find(' ');
    const bool last = blank == std::string::npos;
    const std::string word = text.substr(0, blank);
    const double value = word.empty() ? 0 : ReadNumber(word);
    if (!word.empty() && (value != 0 || count != 0)) {
      NoteWordWithoutNumber(word, value);
      store(value);
      text = last ? "" : Trim(std::string_view(text).substr(blank + 1));
    }
    if (last || (value == 0 && count == 0) || index == count) break;
  }
  if (!tolerant && count != 0 && index != count) TellTooFew(original, count);
  count = index;
}

void CellText::TellTooFew(const std::string& line, int wanted) {
  NotePlace(std::to_string(wanted) + (wanted == 1 ? " number is" : " numbers are") + " wanted here, \"" + line +
            "\" holds fewer");
  prompt_.dialogs().Tell(
      "Input data in Excel sheet not correct: line ==>" + line + "<== !   Please read user manual   ", "",
      Icon::Warning);
  prompt_.AbortQuestion();
}

void CellText::SplitDoubles(std::string& text, std::vector<double>& values, double& count) {
  int whole = static_cast<int>(CInt(count));
  SplitNumbers(text, values, whole, 1, false);
  count = whole;
}

void CellText::SplitWords(std::string& text, std::vector<std::string>& words, int& count, int first, bool tolerant) {
  const std::string original = text;
  CleanNumberLine(text);
  int index = first - 1;
  while (!text.empty() && (count == 0 || index < count)) {
    const std::size_t blank = text.find(' ');
    const std::string word = text.substr(0, blank);
    text = blank == std::string::npos ? "" : Trim(std::string_view(text).substr(blank + 1));
    ++index;
    if (index < 0 || static_cast<std::size_t>(index) >= kMaxList) Raise(FailureNumber::SubscriptOutOfRange);
    if (words.size() <= static_cast<std::size_t>(index)) words.resize(static_cast<std::size_t>(index) + 1);
    words[static_cast<std::size_t>(index)] = word;
  }
  if (!tolerant && count != 0 && index != count) TellTooFew(original, count);
  count = index;
}

void CellText::ExtractInto(std::string& text, const std::vector<double*>& targets, bool tolerant) {
  std::vector<double> values(targets.size() + 1, 0.0);
  int count = static_cast<int>(targets.size());
  SplitNumbers(text, values, count, 1, tolerant);
  for (std::size_t k = 0; k < targets.size(); ++k) *targets[k] = values[k + 1];
}

void CellText::Extract1(std::string& text, double& a) {
  ExtractInto(text, {&a}, true);
}

void CellText::Extract2(std::string& text, double& a, double& b) {
  ExtractInto(text, {&a, &b}, false);
}

void CellText::Extract3(std::string& text, double& a, double& b, double& c) {
  ExtractInto(text, {&a, &b, &c}, false);
}

void CellText::Extract4(std::string& text, double& a, double& b, double& c, double& d) {
  const std::string original = text;
  std::string copy = text;
  double pairs[4] = {};
  Extract2(copy, pairs[0], pairs[1]);
  Extract2(copy, pairs[2], pairs[3]);
  ExtractInto(text, {&a, &b, &c, &d}, false);
  if (pairs[0] != a || pairs[1] != b || pairs[2] != c || pairs[3] != d || copy != text) {
    prompt_.dialogs().Tell("Exctract 2 error " + original, "Error", Icon::Critical);
    prompt_.AbortQuestion();
  }
}

void CellText::Extract5(std::string& text, double& a, double& b, double& c, double& d, double& e) {
  ExtractInto(text, {&a, &b, &c, &d, &e}, false);
}

void CellText::Extract7(std::string& text, const std::vector<double*>& targets) {
  Extract5(text, *targets.at(0), *targets.at(1), *targets.at(2), *targets.at(3), *targets.at(4));
  Extract2(text, *targets.at(5), *targets.at(6));
}

void CellText::Extract10(std::string& text, const std::vector<double*>& targets) {
  Extract5(text, *targets.at(0), *targets.at(1), *targets.at(2), *targets.at(3), *targets.at(4));
  Extract5(text, *targets.at(5), *targets.at(6), *targets.at(7), *targets.at(8), *targets.at(9));
}

void CellText::Extract12(std::string& text, const std::vector<double*>& targets) {
  Extract10(text, {targets.begin(), targets.begin() + 10});
  Extract2(text, *targets.at(10), *targets.at(11));
}

std::vector<std::string> CellText::ExtractWords10(std::string& text) {
  std::vector<std::string> words(21);
  int count = 20;
  SplitWords(text, words, count, 1, true);
  return {words.begin() + 1, words.begin() + 11};
}

}  // namespace orv
