// The converter root: what it writes into the field book, and what it tells the user.

#include "framework/ConvFileBase.h"
#include "framework/ConvGen.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "tests/support/Files.h"
#include "tests/support/NotFinite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace convfile::test {
namespace {

using memory::Adder;
using memory::FieldBook;
using testing::HasSubstr;

/// A converter of nothing, with the writers in the open.
class OpenConverter : public CConvGen {
public:
    explicit OpenConverter(FieldBook& book) : CConvGen(book, &name) {}

    using CConvGen::AddJobOfFile;
    using CConvGen::AggiungeJob;
    using CConvGen::AggiungePun;
    using CConvGen::AggiungeSta;
    using CConvGen::GetNomeOfJob;
    using CConvGen::SetHStrumAtSta;
    using CConvGen::warningKind_;

    void Sta(const char* staName) { AggiungeSta(staName, "", 1.5, kNoValue, kNoValue); }
    void Pun(const char* punName) { AggiungePun(punName, "", "", 1.6, 10, 100, 50); }

    std::string name = "site.txt";
};

TEST(Writer, StationsGoIntoTheLastJobThatWasThere) {
    FieldBook book;
    for (int i = 0; i < 3; ++i)
        book.AddJob(true);
    OpenConverter(book).Sta("S1");
    EXPECT_EQ(book.GetStaArSize(2), 1);
}

TEST(Writer, GoesOnWhereABookDeclines) {
    FieldBook book;
    book.DeclineFrom(Adder::Station, 1);
    OpenConverter converter(book);
    converter.AggiungeJob("A", "", "", "");
    converter.Sta("S1");
    converter.Sta("declined");
    converter.Pun("has no station now");
    EXPECT_EQ(book.GetStaArSize(0), 1);
    EXPECT_EQ(book.GetPunArSize(0, 0), 0);

    FieldBook jobless;
    jobless.DeclineFrom(Adder::Job, 0);
    OpenConverter other(jobless);
    other.AggiungeJob("A", "", "", "");
    other.Sta("S1");
    other.Pun("1");
    EXPECT_EQ(jobless.GetJobArSize(), 0);
}

/// A book that took no job is begun anew: the next job counts as the first, and an unnamed one is
/// taken to be the first wherever it stands.
TEST(Writer, CountsJobsFromTheFirstAfterADeclinedOne) {
    constexpr std::size_t kAccept = 99;
    FieldBook book;
    OpenConverter converter(book);
    converter.AggiungeJob("A", "", "", "");
    converter.AggiungeJob("B", "", "", "");
    book.DeclineFrom(Adder::Job, 2);
    converter.AggiungeJob("declined", "", "", "");
    book.DeclineFrom(Adder::Job, kAccept);
    converter.AggiungeJob("C", "", "", "");
    EXPECT_EQ(converter.GetNomeOfJob(), "A");
    book.DeclineFrom(Adder::Job, 0);
    converter.AggiungeJob("declined", "", "", "");
    book.DeclineFrom(Adder::Job, kAccept);
    book.DeclineFrom(Adder::Station, 0);
    converter.Sta("declined");
    converter.Pun("lost");
    book.DeclineFrom(Adder::Station, kAccept);
    converter.Pun("1");
    EXPECT_EQ(book.GetJobArSize(), 4);
    EXPECT_EQ(book.GetPunArSize(0, 0), 1);
}

TEST(Writer, WhatIsNotFiniteIsAbsent) {
    FieldBook book;
    OpenConverter converter(book);
    converter.AggiungeSta("S", "", kNan, kInfinity, -kInfinity);
    converter.AggiungePun("1", "", "", kNan, kInfinity, -kInfinity, kNan);
    converter.SetHStrumAtSta(kInfinity);
    const auto& station = *book.Jobs()[0]->stations[0];
    const auto& point = *station.points[0];
    for (const double value : {station.InstrumentHeight(), station.Temperature(),
                               station.Pressure(), point.TargetHeight(), point.SlopeDistance(),
                               point.ZenithAngle(), point.HorizontalAngle()}) {
        EXPECT_EQ(value, kNoValue);
    }
}

/// The texts of the first three are in the reference files.
TEST(Writer, TellsTheLastWarningOnceAndInWindows1252) {
    memory::TakeMessages();
    const auto warning = [](std::initializer_list<int> kinds) {
        FieldBook book;
        {
            OpenConverter converter(book);
            for (const int kind : kinds)
                converter.warningKind_ = kind;
        }
        const auto messages = memory::TakeMessages();
        EXPECT_LE(messages.size(), 1U);
        return messages.empty() ? "" : messages[0].title + ": " + messages[0].text;
    };
    EXPECT_THAT(warning({2, 1}), HasSubstr("Dislivello !\n\nSono stati trasformati"));
    EXPECT_THAT(warning({1, 2}), HasSubstr("Il Dislivello \xE8 stato considerato"));
    EXPECT_THAT(warning({3}), HasSubstr("poich\xE9 potrebbero essere errati"));
    EXPECT_EQ(
        warning({4}),
        "Import File: Alcuni dei dati presenti nel file sono stati convertiti poich\xE8 erano "
        "in formato coordinate.\n\nSi \xE8 assunto che tutte le stazioni avessero coordinate "
        "0,0,0.\n\nSe cos\xEC non fosse, i dati convertiti sono errati !");
    for (const int kind : {0, 5, -1})
        EXPECT_EQ(warning({kind}), "") << kind;
}

TEST(Writer, CodesGoThroughTheHostsTableOnce) {
    memory::UseCodeTable({.pointCodes = {{"12", "MURO"}, {"MURO", "twice"}},
                          .stationIdentifiers = {{"12", "CAPOSALDO"}},
                          .drawingAttributes = {{"12", "LINEA"}, {"MURO", "of the stored code"}},
                          .conversionMode = true});
    FieldBook book;
    {
        OpenConverter converter(book);
        memory::UseCodeTable({});
        converter.AggiungeSta("S", "12", 1.5, kNoValue, kNoValue);
        converter.AggiungePun("1", "12", "", 1.6, 10, 100, 50);
        converter.AggiungePun("2", "13", "", 1.6, 10, 100, 50);
    }
    const auto& station = *book.Jobs()[0]->stations[0];
    EXPECT_EQ(station.Identifier(), "CAPOSALDO");
    EXPECT_EQ(station.points[0]->Code(), "MURO");
    EXPECT_EQ(station.points[0]->GetExtras().drawingAttribute, "LINEA");
    EXPECT_EQ(station.points[1]->Code(), "13");
    EXPECT_EQ(station.points[1]->GetExtras().drawingAttribute, "");
}

TEST(Writer, CopiesShareTheCodeTableUntilTheLastIsGone) {
    FieldBook book;
    const int before = memory::LiveCodeTables();
    {
        auto first = std::make_unique<OpenConverter>(book);
        const OpenConverter copy(*first);
        EXPECT_EQ(memory::LiveCodeTables(), before + 1);
        first.reset();
        EXPECT_EQ(memory::LiveCodeTables(), before + 1);
    }
    EXPECT_EQ(memory::LiveCodeTables(), before);
}

/// Hands the lines it is given back.
class LineKeeper : public CConvFileBase {
public:
    using CConvFileBase::CConvFileBase;
    std::vector<std::string> lines;

private:
    void ProcessaRiga() override { lines.emplace_back(line_); }
};

TEST(LineDriven, HandsNoEmptyLineOn) {
    const TempFolder folder;
    FieldBook book;
    std::string path = folder.Write("lines.txt", "one\r\n\n \nABC");
    LineKeeper keeper(book, &path);
    EXPECT_TRUE(keeper.Esegui());
    EXPECT_THAT(keeper.lines, testing::ElementsAre("one", " ", "AB"));
}

TEST(Writer, NamesTheJobAfterTheFile) {
    FieldBook book;
    OpenConverter converter(book);
#if defined(_WIN32)
    converter.name = "C:\\jobs/caffe.txt";
    const std::string name = "caffe.txt";
#else
    converter.name = "/jobs/caff\u00E8 \u0416.txt"; // a name of the system, in UTF-8
    const std::string name = "caff\xE8 ?.txt";
#endif
    converter.AddJobOfFile();
    EXPECT_EQ(book.Jobs().at(0)->Name(), name);
}

} // namespace
} // namespace convfile::test
