#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

// Another program's objects, spoken to by the names of their members. What is said over it is plain C++; the platform
// lends the connection.
namespace orv {

class AutomationObject;
struct AutomationTable;

// An error that a cell shows, by the code of its program.
struct AutomationError {
  std::int32_t code = 0;
  friend bool operator==(const AutomationError&, const AutomationError&) = default;
};

using AutomationReference = std::shared_ptr<AutomationObject>;
// Nothing, a logical value, a number, a text in UTF-8, an error, an object (never null), or a rectangle of such values.
using AutomationValue = std::variant<std::monostate, bool, double, std::string, AutomationError, AutomationReference,
                                     std::shared_ptr<const AutomationTable>>;
using AutomationList = std::vector<AutomationValue>;

// A rectangle, row by row.
struct AutomationTable {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<AutomationValue> values;
};

// Each operation raises the RuntimeFailure that the other program answers with.
class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  virtual AutomationValue Get(const std::string& member, const AutomationList& arguments) = 0;
  virtual void Put(const std::string& member, const AutomationValue& value) = 0;
  virtual AutomationValue Call(const std::string& method, const AutomationList& arguments) = 0;

  AutomationValue Get(const std::string& member) { return Get(member, {}); }
  AutomationValue Call(const std::string& method) { return Call(method, {}); }
};

// The running program of that name, as "Excel.Application". Failure 429 when there is none; nothing is started.
using AutomationSource = std::function<AutomationReference(const std::string& program)>;

}  // namespace orv
