// The text of the failure sweep: outcomes that differ in numbers only become one, and texts are compared.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zrtest
{

using Lines = std::vector<std::string>;

// One outcome and the value that led to it.
struct Variant {
    uint64_t value;
    std::string text;
};

// Outcomes that differ in numbers only, as one: a number that is the value throughout reads as `$name`, any
// other that differs as {a,b,c}.
struct Merged {
    std::vector<uint64_t> values;
    std::string text;
};
std::vector<Merged> merge(const std::string &name, const std::vector<Variant> &variants);

// Neighbours that differ in numbers only as one with their count: a, b, c, b, c as "a", "(b, c) x2". Blocks
// of up to `longest` items repeat.
Lines repeated(const Lines &items, size_t longest);

// Long lines broken behind a comma; what the library prints stays whole.
Lines wrapped(const Lines &lines);

// Text by heading. Several headings over one body share it.
class Transcript
{
public:
    void add(const std::string &heading, const Lines &body);
    void read(const std::string &path);
    void write(const std::string &path) const;

    const std::vector<std::string> &headings() const { return order_; }
    Lines body(const std::string &heading) const;

private:
    std::vector<std::string> order_;
    std::map<std::string, Lines> bodies_;
};

} // namespace zrtest
