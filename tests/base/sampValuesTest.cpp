#include "base/sampValues.h"

#include <random>
#include <utility>

#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::FailingCalls;
using Table = std::vector<std::vector<double>>;  // by row: what the store must hold

// 512 columns make blocks of 513 rows, so that a few megabytes already fill several windows.
constexpr std::int32_t kBlockColumns = 512;
constexpr std::int32_t kBlock = 513;
constexpr std::int32_t kWindowedRows = 1600;

double cellOf(std::int32_t row, std::int32_t column) {
  return row + column / 1024.0;
}

Table tableOf(std::int32_t rows, std::int32_t columns) {
  Table table(static_cast<std::size_t>(rows), std::vector<double>(static_cast<std::size_t>(columns)));
  for (std::int32_t r = 0; r < rows; ++r)
    for (std::int32_t c = 0; c < columns; ++c) table[r][c] = cellOf(r, c);
  return table;
}

sampValues storeOf(const Table& table) {
  sampValues store;
  EXPECT_TRUE(store.allocate(static_cast<std::int32_t>(table[0].size())));
  for (const auto& row : table) EXPECT_GT(store.addRow(row.data()), 0);
  return store;
}

void expectRows(const sampValues& store, const Table& table) {
  ASSERT_EQ(store.rows(), static_cast<std::int32_t>(table.size()));
  std::vector<double> row(static_cast<std::size_t>(store.columns()));
  for (std::int32_t r = 0; r < store.rows(); ++r) {
    ASSERT_TRUE(store.getRow(r, row.data())) << store.errorText();
    ASSERT_TRUE(row == table[r]) << "row " << r;
  }
  std::vector<double> rest(row.size() * table.size());
  ASSERT_TRUE(store.getRows(1, store.rows() - 1, rest.data())) << store.errorText();
  for (std::size_t r = 1; r < table.size(); ++r)
    ASSERT_TRUE(std::equal(table[r].begin(), table[r].end(), rest.begin() + (r - 1) * row.size())) << "rows from 1";
}

void expectColumns(const sampValues& store, const Table& table) {
  ASSERT_EQ(store.rows(), static_cast<std::int32_t>(table.size()));
  std::vector<double> column;
  for (std::int32_t c = 0; c < store.columns(); ++c) {
    ASSERT_TRUE(store.getColumn(c, column)) << store.errorText();
    for (std::int32_t r = 0; r < store.rows(); ++r) ASSERT_EQ(column[r], table[r][c]) << "row " << r << " column " << c;
  }
}

// Random operations of both families against a table in memory. Blocks of one row keep every window aligned.
TEST(SampValues, OperationsOfBothFamiliesMix) {
  for (const std::int32_t columns : {1, 3, 262145}) {
    SCOPED_TRACE(columns);
    const bool wide = columns > 1000;
    std::mt19937 random(static_cast<unsigned>(columns));
    Table table = tableOf(wide ? 4 : 50, columns);
    sampValues store = storeOf(table);
    for (int step = 0; step < (wide ? 8 : 4000); ++step) {
      const std::int32_t r = static_cast<std::int32_t>(random() % table.size());
      const std::int32_t c = static_cast<std::int32_t>(random() % static_cast<unsigned>(columns));
      const double x = static_cast<double>(random());
      double got = 0;
      switch (random() % 7) {
        case 0:
          ASSERT_TRUE(store.setValue(r, c, table[r][c] = x));
          break;
        case 1:
          ASSERT_TRUE(store.setColumnValue(r, c, table[r][c] = x));
          break;
        case 2:
          store.rowPointer(r)[c] = table[r][c] = x;
          break;
        case 3:
          table[r][0] = x;
          ASSERT_TRUE(store.setRow(r, table[r].data()));
          break;
        case 4:
          if (table.size() < (wide ? 6u : 200u)) {
            table.push_back(table[r]);
            ASSERT_EQ(store.addRow(table.back().data()), static_cast<std::int32_t>(table.size()));
          }
          break;
        case 5:
          ASSERT_TRUE(store.setColumnMode(random() % 2 == 0));
          break;
        default:
          ASSERT_TRUE(store.getColumnValue(r, c, got));
          ASSERT_EQ(got, table[r][c]);
      }
    }
    expectRows(store, table);
    if (!wide) expectColumns(store, table);
  }
}

TEST(SampValues, PassesOverManyWindows) {
  Table table = tableOf(kWindowedRows, kBlockColumns);
  sampValues store = storeOf(table);
  ASSERT_EQ(store.blockRows(), kBlock);
  expectColumns(store, table);
  for (std::int32_t c = 0; c < kBlockColumns; c += 7)
    for (std::int32_t r = 0; r < kWindowedRows; r += 3) ASSERT_TRUE(store.setColumnValue(r, c, table[r][c] = -r - c));
  expectRows(store, table);
  for (std::int32_t r = 0; r < kWindowedRows; ++r) store.rowPointer(r)[5] = table[r][5] = r * 0.5;
  // Added after a change of family, behind the first window.
  for (int i = 0; i < kBlock; ++i) {
    table.push_back(table[i]);
    ASSERT_GT(store.addRow(table.back().data()), 0);
    ASSERT_TRUE(i % 200 != 0 || store.setColumnMode(true));
  }
  expectRows(store, table);
}

// A window that begins at row 600 ends in the third block. What it holds of that block, rows 1026 to 1112, goes to the
// column file at ((q + 1) * blockRows + c) * columns = (2 * 513 + c) * 512: c * 512 values behind the block's start.
TEST(SampValues, UnalignedWindowsLandWhereTheyAlwaysDid) {
  Table table = tableOf(kWindowedRows, kBlockColumns);
  sampValues store = storeOf(table);
  ASSERT_TRUE(store.setValue(600, 0, table[600][0] = -1));
  Table columns = table;
  for (std::int32_t c = 0; c < kBlockColumns; ++c)
    for (std::int32_t k = 0; k < 600 - kBlock; ++k)
      columns[1026 + (c * 512 + k) % 513][(c * 512 + k) / 513] = cellOf(1026 + k, c);
  expectColumns(store, columns);
  expectRows(store, table);
}

// A window at row 1100 reaches beyond the last row: one value less than it holds of the fourth block is written, of
// rows 1539 to 1611; those from 1600 on are nobody's.
TEST(SampValues, UnalignedWindowBeyondTheLastRow) {
  Table table = tableOf(kWindowedRows, kBlockColumns);
  sampValues store = storeOf(table);
  store.rowPointer(1100)[1] = table[1100][1] = -1;
  ASSERT_TRUE(store.setColumnMode(true));
  Table columns = table;
  std::vector<std::pair<int, int>> undefined;
  for (std::int32_t c = 0; c < kBlockColumns; ++c) {
    for (std::int32_t k = 0; k < 1100 - 2 * kBlock - 1; ++k) {
      const std::int32_t row = 1539 + (c * 512 + k) % 513;
      if (row >= kWindowedRows) continue;
      const std::int32_t column = (c * 512 + k) / 513;
      if (1539 + k < kWindowedRows)
        columns[row][column] = cellOf(1539 + k, c);
      else
        ASSERT_TRUE(store.getColumnValue(row, column, columns[row][column]));
    }
  }
  expectColumns(store, columns);
  expectRows(store, table);
}

TEST(SampValues, CopiesAreTheirOwn) {
  const Table table = tableOf(kWindowedRows, kBlockColumns);
  sampValues store = storeOf(table);
  ASSERT_TRUE(store.setColumnMode(true));
  sampValues copy;
  ASSERT_TRUE(copy.assign(store));
  ASSERT_TRUE(store.setColumn(2, std::vector<double>(kWindowedRows, -3)));
  ASSERT_TRUE(store.setValue(0, 0, 77));
  expectRows(copy, table);
  sampValues assigned = storeOf(tableOf(2, 2));
  EXPECT_TRUE(assigned.assign(copy) && assigned.assign(assigned));
  expectColumns(assigned, table);
}

// Whichever call of the system fails, and whether it recovers or not: the operation says so, and once the disk has room
// again the table is what it would have been without that operation.
TEST(SampValues, AFullDiskLosesNothing) {
  const Table table = tableOf(kWindowedRows, kBlockColumns);
  const struct {
    const char* name;
    bool (*run)(sampValues& store);
  } operations[] = {
      {"to column mode", [](sampValues& s) { return s.setColumnMode(true); }},
      {"add a row", [](sampValues& s) { return s.addRow(tableOf(1, kBlockColumns)[0].data()) != 0; }},
      {"row of another window", [](sampValues& s) { return s.rowPointer(0) != nullptr; }},
      {"value of a column",
       [](sampValues& s) {
         double value = 0;
         return s.getColumnValue(0, 3, value);
       }},
  };
  for (const auto& operation : operations) {
    for (const auto call : {FailingCalls::kPwrite, FailingCalls::kPread}) {
      FailingCalls calls;
      for (int n = 1;; n += n < 3 ? 1 : 200) {
        SCOPED_TRACE(testing::Message() << operation.name << ", call " << call << ", failure " << n);
        sampValues store = storeOf(table);
        const bool addsRow = operation.name[0] == 'a';
        if (addsRow) {
          ASSERT_TRUE(store.setColumnMode(true) && store.setColumnValue(7, 7, cellOf(7, 7)));
        }
        calls.fail(call, n);
        const bool done = operation.run(store);
        const bool failed = calls.count(call) >= n;
        calls.clearFailures();
        ASSERT_EQ(done, !failed);
        if (!failed) break;
        EXPECT_EQ(store.errorText(), std::string("Cannot ") + (call == FailingCalls::kPwrite ? "write" : "read") +
                                         " the working file in " + WorkingFile::directory() +
                                         ": No space left on device");
        expectRows(store, table);
        expectColumns(store, table);
      }
    }
  }
}

}  // namespace
}  // namespace tarvex
