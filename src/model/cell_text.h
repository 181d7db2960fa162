#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "numerics/environment.h"
#include "numerics/error_prompt.h"

// What the user types in a cell is free text under any national number format. These routines turn it into numbers and
// words. None of them fails on bad text: what is no number reads as 0.
namespace orv {

// Trimmed and upper-cased: the form in which keywords are compared.
std::string UpperTrim(std::string_view text);

// Deletes the blanks between a minus and the number behind it: "- 5" becomes "-5", "a - b" stays.
std::string RepairMinus(std::string_view text);

// Every separator of names and table entries (; % $ @ |) turned into "|", Chr(160) into a blank; `separator` becomes
// "|".
std::string NormaliseNameSeparators(std::string_view text, std::string& separator);

// The trimmed texts before and behind the first separator of a cell; `second` is empty when there is none.
void SplitTwoNames(std::string_view cell, std::string& first, std::string& second);

// Without the characters that a file name cannot hold: \ / : @ |.
std::string CleanFileName(std::string_view text);

// The end of a word found with a search that gives 0 for "not found": `position`, or the length + 1.
std::size_t NextWordEnd(std::size_t position, std::string_view text);

// The number at the start of a text: sign, digits, dot, exponent; 0 when there is none.
double LeadingNumber(std::string_view text);

// The text of a number with a decimal point so that ReadNumber takes it for the same number under any locale: where the
// dot separates thousands, "22.5" becomes "225E-1".
std::string TextForAnyLocale(const std::string& number, const Locale& locale);

// The readers that depend on the number format in use and that may ask the user. One object a session, since the
// warning about commas comes once in the life of the program.
class CellText {
 public:
  CellText(ErrorPrompt& prompt, Locale locale) : prompt_(prompt), locale_(std::move(locale)) {}

  // A number from text in any form; 0 for an empty text. Blanks inside are dropped; a comma is a decimal comma or a
  // thousands separator by its place.
  double ReadNumber(std::string_view text);

  // A number that the program has written itself, or one of a formula: the point is the decimal separator whatever the
  // locale. One with a comma is read as in a cell.
  double ReadPointNumber(std::string_view text);

  // As ReadNumber, for a cell that should hold a number: one that holds words instead is logged with its place.
  double ReadNumberAt(std::string_view text, const std::string& place);

  // Makes the blank the only separator between numbers.
  void CleanNumberLine(std::string& text);

  // Takes numbers from the front of the text into values[first ..]. count > 0: exactly so many are wanted; when there
  // are fewer and `tolerant` is false the user is told. count = 0: up to the first word that reads as zero. On return
  // count is the last index filled. `values` grows as needed up to kMaxList entries (failure 9 beyond).
  void SplitNumbers(std::string& text, std::vector<double>& values, int& count, int first = 1, bool tolerant = false);
  void SplitDoubles(std::string& text, std::vector<double>& values, double& count);
  void SplitWords(std::string& text, std::vector<std::string>& words, int& count, int first = 1, bool tolerant = false);

  // Takes a fixed count of numbers from the front of the text.
  void Extract1(std::string& text, double& a);
  void Extract2(std::string& text, double& a, double& b);
  void Extract3(std::string& text, double& a, double& b, double& c);
  void Extract4(std::string& text, double& a, double& b, double& c, double& d);
  void Extract5(std::string& text, double& a, double& b, double& c, double& d, double& e);
  // As many numbers as there are targets: 7, 10 or 12.
  void Extract7(std::string& text, const std::vector<double*>& targets);
  void Extract10(std::string& text, const std::vector<double*>& targets);
  void Extract12(std::string& text, const std::vector<double*>& targets);
  // Up to 20 words, of which ten are returned.
  std::vector<std::string> ExtractWords10(std::string& text);

  // 1 when the spreadsheet prints decimals with a comma.
  void setCommaDecimal(int value) { commaDecimal_ = value; }
  int commaDecimal() const { return commaDecimal_; }
  const Locale& locale() const { return locale_; }

  // Where the text being read stands ("cell C9, model row 4"). While a place is set, words that read as 0 though they
  // are no number, and lines with too few numbers, are logged with it; an empty text ends that.
  void setPlace(std::string place) { place_ = std::move(place); }
  ErrorPrompt& prompt() { return prompt_; }

  static constexpr std::size_t kMaxList = 4096;

 private:
  double ReadWithCommas(const std::string& kept, const std::string& unquoted);
  void NotePlace(const std::string& what);
  void TellTooFew(const std::string& line, int wanted);
  void NoteWordWithoutNumber(std::string_view word, double value);
  void ExtractInto(std::string& text, const std::vector<double*>& targets, bool tolerant);

  ErrorPrompt& prompt_;
  Locale locale_;
  std::string place_;
  int commaDecimal_ = 0;
  long commaCount_ = 0;              // commas met since the program started
  bool thousandsDotLogged_ = false;  // the loss of a dot to the locale is told once
};

}  // namespace orv
