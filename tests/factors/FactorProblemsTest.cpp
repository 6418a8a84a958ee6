#include "factors/FactorProblems.h"

#include "factors/Constant.h"
#include "factors/FactorList.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// A list of the relations "name: expression", behind the normal factors a and b.
FactorList checkedList(const std::vector<std::pair<std::string, std::string>>& relations) {
  FactorList list;
  for (const char* name : {"a", "b"}) {
    auto normal = std::make_unique<Normal>();
    EXPECT_TRUE(normal->setName(name));
    list.addFactor(std::move(normal));
  }
  for (const auto& [name, expression] : relations) {
    auto relation = std::make_unique<Relation>();
    EXPECT_TRUE(relation->setName(name));
    EXPECT_TRUE(expression.empty() || relation->setExpression(expression)) << expression;
    list.addFactor(std::move(relation));
  }
  return list;
}

TEST(FactorProblems, relationsAreLookedThrough) {
  const struct {
    std::vector<std::pair<std::string, std::string>> relations;
    std::string warnings;
  } rows[] = {
      {{{"y", "a + b"}, {"z", "y * 2"}}, ""},
      {{{"y", "y = t = a; t + 1"}}, ""},
      {{{"y", ""}}, "y: no expression: the value is 0"},
      {{{"y", "a + k"}}, "y: 'k' is no factor and reads as 0"},
      {{{"y", "z + a"}, {"z", "b"}}, "y: 'z' is a relation below and reads as 0"},
      {{{"y", "y + 1"}}, "y: the expression closes a circle of relations: y"},
      {{{"x", "y"}, {"y", "z"}, {"z", "y + a"}, {"w", "z"}},
       "x: 'y' is a relation below and reads as 0\n"
       "y: the expression closes a circle of relations: y z\n"
       "z: the expression closes a circle of relations: y z"},
      {{{"a", "b"}}, "a: factor 1 has the same name, and relations read that one"},
  };
  for (const auto& row : rows) {
    const auto problems = factorProblems(checkedList(row.relations));
    EXPECT_EQ(problemLines(problems, false), row.warnings);
    EXPECT_EQ(problemLines(problems, true), "");
  }
}

TEST(FactorProblems, whatCannotBeSampledOrWrittenIsAnError) {
  FactorList list = checkedList({});
  list.addFactor(std::make_unique<Constant>());
  dynamic_cast<Constant&>(list.factor(2)).setValue(1.0 / 0.0);
  list.addFactor(std::make_unique<Uniform>());
  ASSERT_TRUE(dynamic_cast<Uniform&>(list.factor(3)).intervalAt(0)->setBounds(2000000.0, 2000001.0));
  list.factor(0).note.assign(255, 'n');
  list.factor(1).name = "b_2";
  ASSERT_TRUE(dynamic_cast<Normal&>(list.factor(1)).setLeftTruncation(2.0));
  const auto problems = factorProblems(list);
  EXPECT_EQ(problemLines(problems, true),
            "a: the note has 255 characters, more than 254\n"
            "b_2: the factor name 'b_2' is no name: letters and digits only, a letter first\n"
            "b_2: Left Truncation must be less than right truncation");
  EXPECT_EQ(problemLines(problems, false),
            "nonameConst: value is not a finite number: inf\n"
            "nonameUnif: in a file, which keeps six digits, it can't be sampled any more: interval 1: left bound >= of "
            "right bound");
}

}  // namespace
}  // namespace tarvex
