#pragma once

#include <functional>
#include <string>

namespace tarvex::test {

// Calls `use` with every damage that the tests know of one text: the text cut before each field; each field cut to
// half, its first digit made a letter, and each number made 0, negative, 1e9, 2147483648 or 1e400; each line dropped or
// made 5,000 characters long; rubbish or nothing in place of the whole. Fields are what blanks and commas part. Of a
// table the first rows and cells stand for all. `what` says the damage, then the line: "cut at line 3".
void forEachDamage(const std::string& text,
                   const std::function<void(const std::string& what, const std::string&)>& use);

}  // namespace tarvex::test
