#pragma once

#include "host/Job.h"
#include "host/Ori.h"
#include "host/Pun.h"
#include "host/Sta.h"
#include "memory/Entity.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace convfile::memory {

class Station;

/// Texts that many records have in common, each kept once. A text stays where it is while the pool
/// lives.
class TextPool {
public:
    const std::string& Keep(const std::string& text) {
        const std::string*& recent = recent_[Place(text)];
        if (!recent || *recent != text)
            recent = &*texts_.insert(text).first;
        return *recent;
    }
    static const std::string& Empty() {
        static const std::string empty;
        return empty;
    }

private:
    static constexpr std::size_t kRecent = 64;

    /// Where a text is looked for first: a surveyor uses a few codes over and over.
    static std::size_t Place(const std::string& text) {
        const std::size_t ends = text.empty()
                                     ? 0
                                     : std::size_t{5} * static_cast<unsigned char>(text.front()) +
                                           static_cast<unsigned char>(text.back());
        return (ends + 3 * text.size()) % kRecent;
    }

    std::unordered_set<std::string> texts_;
    std::array<const std::string*, kRecent> recent_{}; ///< kept last, each in its place
};

/// An observed point as the field book in memory keeps it.
class Point final : public Entity<CPun> {
public:
    explicit Point(const Station& station) : station_(&station) {}

    void SetCode(const std::string& code) override;
    const std::string& GetCode() override { return *code_; }
    void SetAltPri(double height) override { targetHeight_ = height; }
    void SetAngO(double angle) override { horizontalAngle_ = angle; }
    double GetAngO() override { return horizontalAngle_; }
    void SetAngV(double angle) override { zenithAngle_ = angle; }
    double GetAngV() override { return zenithAngle_; }
    void SetDiIn(double distance) override { slopeDistance_ = distance; }
    double GetDiIn() override { return slopeDistance_; }
    void SetDtIntAng(double slopeDistance, double verticalAngle, double horizontalAngle) override;
    /// Derives the observation through the book's own calculator; any other leaves it as it is.
    void SetCoordEtCalcMisure(bool setting, double x, double y, double z, CCalcDsOr& calculator,
                              double, double) override;

    const std::string& Code() const { return *code_; }
    double TargetHeight() const { return targetHeight_; }
    double SlopeDistance() const { return slopeDistance_; }
    double ZenithAngle() const { return zenithAngle_; }
    double HorizontalAngle() const { return horizontalAngle_; }
    const Station& Owner() const { return *station_; }

private:
    const std::string* code_ = &TextPool::Empty(); ///< in the pool of the book
    double targetHeight_ = kNoValue;
    double slopeDistance_ = kNoValue;
    double zenithAngle_ = kNoValue;
    double horizontalAngle_ = kNoValue;
    const Station* station_;
};

/// Points lie in the storage of their field book, which goes when the book does; removing one only
/// ends its life.
struct EndPoint {
    void operator()(Point* point) const { std::destroy_at(point); }
};
using PointOwner = std::unique_ptr<Point, EndPoint>;

/// Room for points, in pieces: a book of a million points asks for memory some dozens of times
/// instead of a million times. The first pieces are small; those of a large book are asked for as
/// large pages of memory, where the system has such: to touch one costs less than the 512 small
/// pages that it stands for.
class PointStorage {
public:
    PointOwner NewPoint(const Station& station);

private:
    struct EndPiece {
        bool isLarge = false;
        void operator()(std::byte* piece) const;
    };
    using Piece = std::unique_ptr<std::byte, EndPiece>;

    static Piece NewPiece(bool isLarge);

    std::vector<Piece> pieces_;
    std::size_t used_ = 0; ///< points in the last piece
    std::size_t room_ = 0; ///< points that it takes
};

/// An instrument station with its points.
class Station final : public Entity<CSta> {
public:
    Station(int job, int index, TextPool& codes) : codes_(codes), job_(job), index_(index) {}

    void SetIden(const std::string& identifier) override { identifier_ = identifier; }
    const std::string& GetIden() override { return identifier_; }
    void SetAltStr(double height) override { instrumentHeight_ = height; }
    double GetAltStr() override { return instrumentHeight_; }
    void SetTemper(double temperature) override { temperature_ = temperature; }
    void SetPressi(double pressure) override { pressure_ = pressure; }
    void SetAnCoAz(double angle) override { orientation_ = angle; }

    const std::string& Identifier() const { return identifier_; }
    double InstrumentHeight() const { return instrumentHeight_; }
    double Temperature() const { return temperature_; }
    double Pressure() const { return pressure_; }
    double Orientation() const { return orientation_; }
    int JobIndex() const { return job_; }
    int Index() const { return index_; }
    /// The codes of the book's points.
    TextPool& Codes() const { return codes_; }

    std::vector<PointOwner> points;

private:
    std::string identifier_;
    double instrumentHeight_ = kNoValue;
    double temperature_ = kNoValue;
    double pressure_ = kNoValue;
    double orientation_ = kNoValue;
    TextPool& codes_;
    int job_;
    int index_;
};

/// A job with its stations.
class Job final : public CJob {
public:
    void SetNome(const std::string& name) override { name_ = name; }
    void SetOper(const std::string& operatorName) override { operator_ = operatorName; }
    void SetStrum(const std::string& instrument) override { instrument_ = instrument; }
    void SetData(const std::string& date) override { date_ = date; }
    void SetLabels(const std::string& name, const std::string& operatorName,
                   const std::string& instrument, const std::string& date) override;
    void SetCodeElab(short code) override { processingCode_ = code; }
    const std::string& GetNome() override { return name_; }

    /// The line of the file that it comes from, from 1; 0: none, or nobody told.
    void SetLine(std::uint64_t line) { line_ = line; }
    std::uint64_t Line() const { return line_; }

    const std::string& Name() const { return name_; }
    const std::string& Operator() const { return operator_; }
    const std::string& Instrument() const { return instrument_; }
    const std::string& Date() const { return date_; }
    short ProcessingCode() const { return processingCode_; }

    std::vector<std::unique_ptr<Station>> stations;

private:
    std::string name_;
    std::string operator_;
    std::string instrument_;
    std::string date_;
    short processingCode_ = 0;
    std::uint64_t line_ = 0;
};

/// An orientation point.
class OrientationPoint final : public Entity<COri> {
public:
    void SetAttendibO(short reliability) override { reliability_ = reliability; }
    void SetComm(const std::string& comment) override { comment_ = comment; }

    const std::optional<short>& Reliability() const { return reliability_; }
    const std::string& Comment() const { return comment_; }

private:
    std::optional<short> reliability_;
    std::string comment_;
};

} // namespace convfile::memory
