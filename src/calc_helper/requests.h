#pragma once

#include <string>

#include "calc_helper/office.h"

namespace orv::calc_helper {

// Answers the requests of the program, one line of JSON each:
//   {"id":7,"do":"range","row":1,"column":2,"rows":10,"columns":3}
// with a line that repeats the id: {"id":7,"rows":10,"cells":[...]}, or {"id":7,"failure":91,"text":"..."}. Rows and
// columns count from 1. "attach" fixes the workbook and sheet in front for the requests that follow; "snapshot" looks
// at what is in front now and leaves that alone.
class Requests {
 public:
  explicit Requests(std::string door) : office_(std::move(door)) {}

  std::string Answer(const std::string& line);

 private:
  std::string Members(const std::string& line);
  std::string Attach();
  std::string Names();
  std::string Snapshot();
  // The workbook that is attached to; failure 91 without one.
  const Book& Attached() const;

  Office office_;
  Book book_;
};

}  // namespace orv::calc_helper
