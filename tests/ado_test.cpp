// The query helper over the platform's own objects: which calls they get, in which order, over COM;
// a stand-in writes them down.

#include "database/DBDataProviderLcm.h"
#include "memory/LinkTimeHost.h"
#include "tests/support/AdoStandIn.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"
#include "tests/support/JobImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>

namespace convfile::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr HRESULT kDeclined = static_cast<HRESULT>(0x80004005);

const std::string kProvider = "Provider=Microsoft.ACE.OLEDB.12.0; Data Source=";

std::string Opening(const std::string& options, const std::string& path) {
    return "connection open " + options + " [" + kProvider + path + ";] [] []";
}

class AdoTest : public testing::Test {
protected:
    /// Connects, and forgets the calls of that.
    void Connect() {
        ASSERT_TRUE(database_->Connect("job.tlsv", false));
        ado_.TakeCalls();
    }
    /// Answers every statement with these rows.
    void Answer(std::vector<std::vector<_variant_t>> rows) {
        ado_.answer = [rows](const std::string&) {
            return AdoStandIn::Answer{S_OK, static_cast<ULONG>(rows.empty() ? 1 : rows[0].size()),
                                      rows};
        };
    }

    AdoStandIn ado_;
    std::unique_ptr<CDBDataProviderLcm> database_ = std::make_unique<CDBDataProviderLcm>();
};

_variant_t Null() {
    _variant_t null;
    null.vt = VT_NULL;
    return null;
}

/// Something that has no text.
_variant_t Object() {
    _variant_t object;
    object.vt = VT_UNKNOWN;
    object.punkVal = nullptr;
    return object;
}

TEST_F(AdoTest, ConnectTriesClosesAndOpensAgain) {
    const std::string path = "C:\\caff\xE8 due; tre.tlsv"; // not quoted, whatever is in it
    EXPECT_TRUE(database_->Connect(path.c_str(), true));
    const std::string utf8 = "C:\\caff\u00E8 due; tre.tlsv";
    EXPECT_THAT(ado_.TakeCalls(),
                ElementsAre("create connection", Opening("0", utf8), "connection close",
                            Opening("-1", utf8), "create recordset"));
    EXPECT_THAT(memory::TakeMessages(), IsEmpty());
}

TEST_F(AdoTest, ConnectFailsWhereAStepDoes) {
    ado_.failures = {{"create connection", kDeclined}};
    EXPECT_FALSE(database_->Connect("x", false));
    EXPECT_THAT(ado_.TakeCalls(), ElementsAre("create connection"));
    ado_.failures = {{"connection close", kDeclined}};
    EXPECT_FALSE(database_->Connect("x", false));
    EXPECT_THAT(ado_.TakeCalls(),
                ElementsAre("create connection", Opening("0", "x"), "connection close"));
    ado_.failures = {{"create recordset", kDeclined}};
    EXPECT_FALSE(database_->Connect("x", false));
    EXPECT_THAT(memory::TakeMessages(), IsEmpty());

    ado_.failures = {{"connection open 0", kDeclined}};
    ado_.TakeCalls();
    EXPECT_FALSE(database_->Connect("x", false));
    EXPECT_THAT(ado_.TakeCalls(),
                ElementsAre("create connection", "connection released", Opening("0", "x")));
    ExpectDriverMessage(memory::TakeMessages());
}

TEST_F(AdoTest, AnErrorOfTheSecondOpenReachesTheCaller) {
    ado_.failures = {{"connection open -1", kDeclined}};
    EXPECT_THROW(database_->Connect("x", false), _com_error);
    EXPECT_THAT(memory::TakeMessages(), IsEmpty());
    views::Conversion job;
    ConvertAs("tlsv", "job.tlsv", job);
    EXPECT_FALSE(job.converted);
    EXPECT_EQ(job.fieldBook.GetJobArSize(), 1);
    EXPECT_THAT(job.messages, IsEmpty());
}

TEST_F(AdoTest, AQuerySetsTextAndConnectionAndOpens) {
    Connect();
    Answer({{L"P1"}});
    EXPECT_TRUE(database_->CreateQuery("SELECT Name FROM t WHERE k=", "7"));
    EXPECT_THAT(ado_.TakeCalls(),
                ElementsAre("recordset close", "recordset source SELECT Name FROM t WHERE k=7",
                            "recordset over connection", "recordset open missing missing 1 3 8"));
    EXPECT_EQ(database_->DoGetRows(1), 0);
    EXPECT_THAT(ado_.TakeCalls(), ElementsAre("recordset rows -1 missing missing"));
    EXPECT_THAT(database_->Rows(), ElementsAre("P1\t"));
    EXPECT_THROW(database_->DoGetRows(1), _com_error) << "no row is left";
    EXPECT_EQ(database_->Rows().size(), 1U);
    ado_.TakeCalls();
    // The one recordset is used again, and wide texts pass as they are.
    Answer({{L"P2"}});
    EXPECT_EQ(database_->ReadData("SELECT ", "2", 1), "P2\t");
    EXPECT_TRUE(database_->GenerateQuery(L"SELECT '\u0416'"));
    EXPECT_THAT(ado_.TakeCalls(),
                ElementsAre("recordset close", "recordset source SELECT 2",
                            "recordset over connection", "recordset open missing missing 1 3 8",
                            "recordset rows -1 missing missing", "recordset source SELECT '\u0416'",
                            "recordset over connection", "recordset open missing missing 1 3 8"));
}

TEST_F(AdoTest, AQueryThatFailsGivesNothing) {
    Connect();
    Answer({{L"P1"}});
    for (const char* step : {"recordset source", "recordset over", "recordset open"}) {
        ado_.failures = {{step, kDeclined}};
        ado_.TakeCalls();
        EXPECT_FALSE(database_->CreateQuery("SELECT 1", ""));
        EXPECT_THAT(ado_.TakeCalls().back(), testing::StartsWith(step)) << "nothing after it";
        EXPECT_EQ(database_->ReadData("SELECT 1", "", 1), "");
        std::vector<std::string> out = {"before"};
        EXPECT_FALSE(database_->ReadData("SELECT 1", "", 1, &out));
        EXPECT_THAT(out, ElementsAre("before"));
    }
    ado_.failures.clear();
    Answer({}); // no row: fetching fails
    EXPECT_EQ(database_->ReadData("SELECT 1", "", 1), "");
    std::vector<std::string> out;
    EXPECT_FALSE(database_->ReadData("SELECT 1", "", 1, &out));
    EXPECT_TRUE(database_->CreateQuery("SELECT 1", ""));
    EXPECT_THROW(database_->DoGetRows(1), _com_error);
    EXPECT_THAT(database_->Rows(), IsEmpty());
}

/// Where the provider finds no fault with the statement, the import ends; otherwise it goes on
/// without rows.
TEST_F(AdoTest, AnImportTellsAFailureFromAFault) {
    const TempFolder folder;
    const std::string path = folder.Write("job.tlsv", "");
    const auto import = [&](const std::string& call, HRESULT status, views::Conversion& job) {
        ado_.failures = {{call, status}};
        ado_.answer = AnswerFrom(RealisticJob());
        ConvertAs("tlsv", path, job);
        EXPECT_THAT(job.messages, IsEmpty());
        ASSERT_EQ(job.fieldBook.GetJobArSize(), 1);
    };
    for (const char* call :
         {"recordset source", "recordset over", "recordset open", "recordset rows"}) {
        views::Conversion job;
        import(call, kDeclined, job);
        EXPECT_FALSE(job.converted) << call;
        EXPECT_THAT(job.problem, testing::HasSubstr("0x80004005"));
    }
    views::Conversion shortOfMemory;
    import("recordset rows", E_OUTOFMEMORY, shortOfMemory);
    EXPECT_FALSE(shortOfMemory.converted);
    EXPECT_EQ(shortOfMemory.problem, "not enough memory");
    for (const unsigned status : {0x80040E14U, 0x80040E37U, 0x80040E10U, 0x80040E07U, 0x80020005U,
                                  0x80040E57U, 0x80040E0CU, 0x800A0BB9U, 0x800A0BCDU}) {
        for (const char* call : {"recordset open", "recordset rows"}) {
            views::Conversion job;
            import(call, static_cast<HRESULT>(status), job);
            EXPECT_TRUE(job.converted) << call << status;
            EXPECT_EQ(job.fieldBook.GetStaArSize(0), 0);
        }
    }
    // What was written before the failure stays.
    ado_.TakeCalls();
    views::Conversion job;
    import("recordset source SELECT keyTsShot", kDeclined, job);
    EXPECT_FALSE(job.converted);
    EXPECT_EQ(job.fieldBook.GetStaArSize(0), 3);
    EXPECT_THAT(ado_.TakeCalls(), testing::Contains("recordset rows 1 missing missing"))
        << "of a single datum no more is fetched";
}

TEST_F(AdoTest, AnImportSaysWhyTheDatabaseDoesNotOpen) {
    const TempFolder folder;
    const std::string path = folder.Write("job.tlsv", "");
    ado_.failures = {{"connection open 0", kDeclined}};
    views::Conversion job;
    ConvertAs("tlsv", path, job);
    EXPECT_FALSE(job.converted);
    EXPECT_EQ(job.problem, "the Access Database Engine cannot open it (0x80004005)");
    ado_.failures = {{"create connection", kDeclined}};
    views::Conversion other;
    ConvertAs("tlsv", path, other);
    EXPECT_EQ(other.problem, "databases cannot be read: their driver does not start");
}

TEST_F(AdoTest, FieldsComeAsText) {
    Connect();
    Answer({{L"caff\u00E8 \u0101", 7L, 0.5, true, Null()}, {L"", -1L, 1234.5678, false, L"x"}});
    std::vector<std::string> out = {"before"};
    EXPECT_TRUE(database_->ReadData("SELECT", "", 5, &out));
    EXPECT_THAT(out,
                ElementsAre("before", "caff\xE8 ?\t7\t0.5\t-1\t\t", "\t-1\t1234.5678\t0\tx\t"));
    EXPECT_TRUE(database_->ReadData("SELECT", "", 2, &out)) << "fewer than there are";
    EXPECT_EQ(out.back(), "\t-1\t");
    EXPECT_EQ(database_->ReadData("SELECT", "", 7), "caff\xE8 ?\t7\t0.5\t-1\t\t\t\t") << "more";
}

_variant_t Date(double days) {
    _variant_t date;
    date.vt = VT_DATE;
    date.date = days;
    return date;
}

_variant_t Bytes(const std::string& bytes) {
    _variant_t array;
    array.vt = VT_ARRAY | VT_UI1;
    array.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    for (LONG i = 0; i < static_cast<LONG>(bytes.size()); ++i) {
        char byte = bytes[static_cast<std::size_t>(i)];
        SafeArrayPutElement(array.parray, &i, &byte);
    }
    return array;
}

/// As the engine that reads the files itself gives them.
TEST_F(AdoTest, DatesAndBytesHaveOneForm) {
    Connect();
    Answer({{Date(45552.375), Date(0.25), Date(-1.25), Date(45474), Date(45627.99999999)},
            {Bytes(std::string("a\0\xE8\0\x16\x04x", 7)), Bytes(""), Bytes("x"), 1L, 1L}});
    std::vector<std::string> out;
    EXPECT_TRUE(database_->ReadData("SELECT", "", 5, &out));
    EXPECT_THAT(out, ElementsAre("17/09/2024 09:00:00\t06:00:00\t29/12/1899 06:00:00\t"
                                 "01/07/2024\t02/12/2024\t",
                                 "a\xE8?\t\t\t1\t1\t"));
}

TEST_F(AdoTest, TheStatusIsThatOfTheLastField) {
    Connect();
    const auto statusOf = [&](std::vector<_variant_t> row) {
        const auto fields = static_cast<std::int32_t>(row.size());
        Answer({std::move(row)});
        EXPECT_TRUE(database_->CreateQuery("SELECT", ""));
        return database_->DoGetRows(fields);
    };
    EXPECT_EQ(statusOf({L"a", Null()}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(statusOf({Null(), L"a"}), 0);
    EXPECT_LT(statusOf({L"a", Object()}), 0);
    EXPECT_THAT(database_->Rows(), ElementsAre("a\t\t"));
    const CDBDataProviderLcm unconnected;
    EXPECT_EQ(CDBDataProviderLcm(unconnected).DoGetRows(1), E_NOINTERFACE);
}

TEST_F(AdoTest, LongTextsAreCut) {
    Connect();
    for (const std::size_t length : {1023U, 1024U, 1025U, 70000U}) {
        Answer({{std::wstring(length, L'\u00E8').c_str(), L"x"}});
        EXPECT_EQ(database_->ReadData("SELECT", "", 2),
                  std::string(std::min<std::size_t>(length, 1024), '\xE8') + "\tx\t");
    }
}

TEST_F(AdoTest, CopiesShareTheObjects) {
    Connect();
    Answer({{L"P1"}});
    auto copy = std::make_unique<CDBDataProviderLcm>(*database_);
    *copy = *database_;
    database_.reset();
    EXPECT_EQ(copy->ReadData("SELECT", "", 1), "P1\t");
    ado_.TakeCalls();
    copy.reset();
    EXPECT_THAT(ado_.TakeCalls(), ElementsAre("recordset released", "connection released"));
    EXPECT_EQ(ado_.Objects(), 0);
}

/// How often COM has to be ended on this thread until it is.
int InitialisationsLeft() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    int count = 0;
    for (; CoGetApartmentType(&type, &qualifier) != CO_E_NOTINITIALIZED; ++count)
        CoUninitialize();
    return count;
}

TEST(AdoThread, ComIsEndedOnceForEachDisconnectAndOnceMore) {
    std::optional<int> left;
    std::thread([&] {
        {
            AdoStandIn ado; // three
            CDBDataProviderLcm database;
            EXPECT_TRUE(database.Connect("x", false)); // four
            EXPECT_TRUE(database.Connect("x", false)); // five
            database.Disconnect();
        } // and the destructor
        left = InitialisationsLeft();
    }).join();
    EXPECT_EQ(left, 3);
}

TEST(AdoThread, ObjectsAreReleasedAfterDisconnecting) {
    std::thread([] {
        AdoStandIn ado;
        {
            CDBDataProviderLcm database;
            EXPECT_TRUE(database.Connect("x", false));
            ado.TakeCalls();
            for (int i = 0; i < 3; ++i)
                CoUninitialize(); // only the connection's use of it is left
        }
        EXPECT_THAT(ado.TakeCalls(), ElementsAre("recordset released after the end of COM",
                                                 "connection released after the end of COM"));
    }).join();
}

TEST(AdoThread, WhereComCannotBeHadNothingIsSaid) {
    std::thread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        CDBDataProviderLcm database;
        EXPECT_FALSE(database.Connect("x", false));
        EXPECT_THAT(memory::TakeMessages(), IsEmpty());
    }).join();
}

/// Without the provider, the machine's own ADO says so.
TEST(AdoThread, TheRealOneHasNoProviderHere) {
    std::thread([] {
        CoInitialize(nullptr);
        CoInitialize(nullptr);
        CDBDataProviderLcm database;
        EXPECT_FALSE(database.Connect("no such.tlsv", false));
        ExpectDriverMessage(memory::TakeMessages());
        EXPECT_EQ(database.ReadData("SELECT 1", "", 1), "");
    }).join();
}

} // namespace
} // namespace convfile::test
