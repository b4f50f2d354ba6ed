// The query layer off Windows, on Access files that the tests make: the texts of values that both engines
// give alike.

#include "database/DBDataProviderLcm.h"
#include "tests/support/AccessWriter.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace convfile::test {
namespace {

using access::Table;
using access::Type;
using access::Value;
using access::Version;
using testing::ElementsAre;

class QueryTest : public testing::Test {
protected:
    void Connect(const std::vector<Table>& tables) {
        const std::string path = folder_.Write("test.tlsv", access::Write(Version::Jet4, tables));
        ASSERT_TRUE(database_.Connect(path.c_str(), false));
    }
    std::vector<std::string> Read(const std::string& sql, int fields = 1) {
        std::vector<std::string> rows;
        database_.ReadData(sql, "", fields, &rows);
        return rows;
    }

    TempFolder folder_;
    CDBDataProviderLcm database_;
};

std::vector<Table> OneColumn(Type type, const std::vector<Value>& values) {
    Table table{.name = "T", .columns = {{"a", type}}, .rows = {}, .primaryKey = -1};
    for (const Value& value : values)
        table.rows.push_back({{value}});
    return {table};
}

TEST_F(QueryTest, DatesAndBytesHaveOneForm) {
    Connect(OneColumn(Type::Date, {45552.375, 0.25, -1.25, 45474.0, 45627.99999999, 0.99999999,
                                   -657434.0, -657435.0, 2958465.5, 2958466.0}));
    EXPECT_THAT(Read("SELECT a FROM T"),
                ElementsAre("17/09/2024 09:00:00\t", "06:00:00\t", "29/12/1899 06:00:00\t",
                            "01/07/2024\t", "02/12/2024\t", "31/12/1899\t", "01/01/0100\t", "\t",
                            "31/12/9999 12:00:00\t", "\t"));
    Connect(OneColumn(Type::Binary, {std::string("a\0\xE8\0\x16\x04x", 7), "", "x"}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre("a\xE8?\t", "\t", "\t"));
}

} // namespace
} // namespace convfile::test
