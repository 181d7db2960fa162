#include "app/man_page.h"

#include <CLI/CLI.hpp>

namespace orv {
namespace {

// Roff takes a backslash as an escape, a hyphen for a minus sign to be broken at, and a leading dot or quote as a
// request.
std::string Roff(const std::string& text) {
  std::string result;
  bool lineStart = true;
  for (const char c : text) {
    if (lineStart && (c == '.' || c == '\'')) result += "\\&";
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else {
      result += c;
    }
    lineStart = c == '\n';
  }
  return result;
}

// The name of a type without what its checks say of themselves behind a colon, such as "INT:INT in [0 - 2]".
std::string TypeOf(const CLI::Option& option) {
  const std::string name = option.get_type_name();
  return name.substr(0, name.find(':'));
}

// What a program is, for a list of programs: "Name: what it is." without its name and full stop.
std::string Purpose(const CLI::App& program) {
  std::string purpose = program.get_description();
  const std::size_t colon = purpose.find(": ");
  if (colon != std::string::npos) purpose.erase(0, colon + 2);
  if (purpose.ends_with('.')) purpose.pop_back();
  return purpose;
}

void AppendOptions(const CLI::App& command, std::string& page) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_group().empty()) continue;
    const std::string name = option->get_name(option->get_positional(), true);
    page += ".TP\n.B " + Roff(name);
    const std::string type = TypeOf(*option);
    if (!option->get_positional() && !type.empty()) page += " \\fI" + Roff(type) + "\\fR";
    page += "\n" + Roff(option->get_description()) + "\n";
  }
}

// A footer holds paragraphs whose further lines are indented: kept line by line.
void AppendFooter(const std::string& footer, std::string& page) {
  if (footer.empty()) return;
  page += ".SH EXAMPLES AND EXIT CODES\n.nf\n" + Roff(footer.substr(footer.find_first_not_of('\n'))) + "\n.fi\n";
}

}  // namespace

std::string ManPage(const CLI::App& program, const std::string& version) {
  const std::string& name = program.get_name();
  std::string capitals;
  for (const char c : name) capitals += static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  std::string page = ".TH " + capitals + " 1 \"\" \"" + capitals + " " + Roff(version) + "\" \"User commands\"\n";
  page += ".SH NAME\n" + Roff(name) + " \\- " + Roff(Purpose(program)) + "\n";
  page += ".SH SYNOPSIS\n.B " + Roff(name) + "\n[\\fIFILE\\fR]\n";
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    page += ".br\n.B " + Roff(name + " " + command->get_name()) + "\n[\\fIARGUMENTS\\fR]\n";
  }
  page += ".SH OPTIONS\n";
  AppendOptions(program, page);
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    page += ".SH COMMAND " + Roff(command->get_name()) + "\n" + Roff(command->get_description()) + ".\n";
    AppendOptions(*command, page);
  }
  AppendFooter(program.get_footer(), page);
  return page;
}

}  // namespace orv
