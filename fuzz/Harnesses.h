#pragma once

#include <span>
#include <string_view>

namespace fuzz {

// Each takes bytes from outside to one door of the system. Whatever they are, nothing may crash, leak or hang, and what
// two ways read must be the same. The folder of that name in `corpus` holds seeds, and every input that ever failed.

/// A document to the reader of values, and to the reader of records beside it.
void json(std::string_view input);
/// A letter that names a record, then a document for it: both readers must agree.
void records(std::string_view input);
/// An address, and on a second line what is read at that address.
void url(std::string_view input);
void color(std::string_view input);
void font(std::string_view input);
void picture(std::string_view input);
/// The head and the body of a request, to the service's parsers.
void request(std::string_view input);
/// What a client sends to a running service: anything at all, or behind a digit the body for one of its paths.
void connection(std::string_view input);
void tasks(std::string_view input);
/// The snapshots of a demonstration: whatever a sound one shows, a task that can be read is made of it.
void demonstration(std::string_view input);
void scenario(std::string_view input);
/// A program of additions, removals and moves of constraints, the end of which is compared with a solver that never
/// knew anything else.
void solver(std::string_view input);

struct Harness {
  std::string_view name;
  void (*run)(std::string_view input);
};
std::span<const Harness> harnesses();
/// None when there is none of that name.
const Harness* harnessNamed(std::string_view name);

/// Ends the process, in a way that a fuzzer sees, unless it is so.
void expect(bool isSo, const char* claim);

}  // namespace fuzz
