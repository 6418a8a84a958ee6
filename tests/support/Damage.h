#pragma once

#include <functional>
#include <string>

namespace tarvex::test {

// Calls `use` with every damage that the tests know of one text: the text cut before each line, cut in the middle of
// it, each line dropped or made 5,000 characters long, each number replaced by a word, by 1e999, by 2147483647, by
// 99999999999999999999 and by -1, and rubbish in place of the whole. `what` names the damage and its line.
void forEachDamage(const std::string& text,
                   const std::function<void(const std::string& what, const std::string&)>& use);

}  // namespace tarvex::test
