// The host in memory keeps what is set, and says no where it should.

#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>

namespace convfile::memory {
namespace {

TEST(FieldBook, GivesNullOutOfRange) {
    FieldBook book;
    EXPECT_EQ(book.GetJobAt(-1), nullptr);
    EXPECT_EQ(book.GetJobAt(0), nullptr);
    EXPECT_EQ(book.AddSta(0, true), nullptr);
    EXPECT_EQ(book.GetStaArSize(-1), 0);
    book.AddJob(true);
    EXPECT_EQ(book.GetStaAt(0, -1), nullptr);
    EXPECT_EQ(book.AddPun(0, 0, true), nullptr);
    book.AddSta(0, true);
    EXPECT_EQ(book.GetPunAt(0, 0, 0), nullptr);
    EXPECT_EQ(book.InsPunAt(0, 0, 1, true), nullptr);
    EXPECT_EQ(book.GetPunArSize(5, 5), 0);
}

TEST(FieldBook, KeepsRecordsInPlace) {
    FieldBook book;
    book.AddJob(true);
    book.AddJob(true);
    book.AddSta(1, true);
    CSta* const station = book.AddSta(1, true);
    int job = -5;
    int sta = -5;
    EXPECT_TRUE(book.GetIndiciDiSta(station, job, sta));
    EXPECT_EQ(std::pair(job, sta), std::pair(1, 1));
    EXPECT_FALSE(FieldBook().GetIndiciDiSta(station, job, sta));
    EXPECT_FALSE(book.GetIndiciDiSta(nullptr, job, sta));
    const std::array<CPun*, 2> outer = {book.AddPun(1, 1, true), book.AddPun(1, 1, true)};
    CPun* const middle = book.InsPunAt(1, 1, 1, true);
    EXPECT_EQ(book.GetPunAt(1, 1, 0), outer[0]);
    EXPECT_EQ(book.GetPunAt(1, 1, 1), middle);
    EXPECT_EQ(book.GetPunAt(1, 1, 2), outer[1]);
    book.DelPunAt(middle);
    EXPECT_EQ(book.GetPunArSize(1, 1), 2);
    EXPECT_EQ(book.GetPunAt(1, 1, 1), outer[1]);
    book.DelPunAt(nullptr);
}

/// Its points lie in pieces of memory, the later ones in large ones; each has a place of its own.
TEST(FieldBook, KeepsMorePointsThanFitOnePieceOfMemory) {
    constexpr int kPoints = 60000;
    FieldBook book;
    for (int turn = 0; turn < 2; ++turn) {
        book.AddJob(true);
        book.AddSta(0, true);
        const CPun* const first = book.AddPun(0, 0, true);
        for (int i = 1; i < kPoints; ++i)
            book.AddPun(0, 0, true)->SetNome(std::to_string(i));
        EXPECT_EQ(book.GetPunAt(0, 0, 0), first);
        for (int i = 1; i < kPoints; ++i)
            ASSERT_EQ(book.GetPunAt(0, 0, i)->GetNome(), std::to_string(i));
        book.Clear();
        EXPECT_EQ(book.GetJobArSize(), 0);
    }
}

TEST(Records, StartWithoutValuesAndKeepTheMarker) {
    FieldBook book;
    book.AddJob(true);
    book.AddSta(0, true);
    CPun* const point = book.AddPun(0, 0, true);
    const auto values = [&] {
        return std::array{point->GetDiIn(), point->GetAngV(), point->GetAngO()};
    };
    EXPECT_EQ(values(), (std::array{kNoValue, kNoValue, kNoValue}));
    point->SetDtIntAng(12.5, 100, 399);
    EXPECT_EQ(values(), (std::array{12.5, 100.0, 399.0}));
    point->SetDiIn(kNoValue);
    EXPECT_EQ(values(), (std::array{kNoValue, 100.0, 399.0}));
    point->SetCoordXY(1, 2);
    EXPECT_EQ(book.Jobs()[0]->stations[0]->points[0]->GetExtras().coordinates.z, kNoValue);
}

TEST(Calculator, DerivesAnObservationFromCoordinates) {
    FieldBook book;
    book.AddJob(true);
    CSta* const station = book.AddSta(0, true);
    CPun* const point = book.AddPun(0, 0, true);
    const auto observe = [&](double x, double y, double z) {
        point->SetCoordEtCalcMisure(book.GetCalcolaMisure(), x, y, z, book.GetCalcDsOr(), kNoValue,
                                    kNoValue);
    };
    observe(10, 10, 0);
    EXPECT_EQ(point->GetDiIn(), kNoValue) << "the station has no coordinates";
    station->SetCoord(0, 0, 100);
    station->SetAltStr(1.5);
    observe(10, 10, kNoValue);
    EXPECT_NEAR(point->GetAngO(), 50, 1e-7);
    EXPECT_EQ(point->GetDiIn(), std::sqrt(std::sqrt(200.0) * std::sqrt(200.0) + 101.5 * 101.5));
    point->SetAltPri(1.5);
    observe(0, -25, 100);
    EXPECT_EQ(point->GetDiIn(), 25);
    EXPECT_EQ(point->GetAngV(), 100);
    point->SetDtIntAng(1, 2, 3);
    observe(kNoValue, 5, 5);
    EXPECT_EQ(point->GetDiIn(), 1) << "left alone where the point has no x";
}

TEST(LineRecord, AVertexMayFollowOneThatIsRepeated) {
    CRig line;
    line.RepeatLastVrt(3);
    EXPECT_EQ(line.GetVrtArSize(), 0) << "there is none to repeat";
    line.AddVrt({.name = "A"});
    line.RepeatLastVrt(2);
    EXPECT_EQ(line.GetVrtArSize(), 3);
    EXPECT_EQ(line.AddVrt({.name = "B"}), 3);
    ASSERT_EQ(line.GetVrtArSize(), 4);
    EXPECT_EQ(line.GetVrtAt(2)->name, "A");
    EXPECT_EQ(line.GetVrtAt(3)->name, "B");
    EXPECT_EQ(line.GetVrtAt(4), nullptr);
}

TEST(CadastralDocument, KnowsTheProvincesByName) {
    CadastralDocument document;
    EXPECT_EQ(document.GetNomeProvSigla("Agrigento"), "AG");
    EXPECT_EQ(document.GetNomeProvSigla("REGGIO NELL'EMILIA"), "RE");
    EXPECT_EQ(document.GetNomeProvSigla("forl\xEC-cesena"), "FC");
    EXPECT_EQ(document.GetNomeProvSigla("FORL\xCC"), "FC");
    EXPECT_EQ(document.GetNomeProvSigla("Monza e della Brianza"), "MB");
    EXPECT_EQ(document.GetNomeProvSigla("Viterbo"), "VT");
    EXPECT_EQ(document.GetNomeProvSigla("Atlantide"), "");
    EXPECT_EQ(document.GetNomeProvSigla(""), "");
}

} // namespace
} // namespace convfile::memory
