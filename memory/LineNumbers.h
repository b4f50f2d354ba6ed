#pragma once

#include "host/ConvListener.h"
#include "memory/CadastralDocument.h"
#include "memory/Records.h"

namespace convfile::memory {

/// Gives the records of the field book and the document in memory the line of the file that each
/// comes from. (Only for records of theirs.)
class LineNumbers : public CConvListener {
public:
    explicit LineNumbers(CadastralDocument& document) : document_(document) {}

    void JobWritten(CJob& job, std::uint64_t line) override {
        static_cast<Job&>(job).SetLine(line);
    }
    void StationWritten(CSta& station, std::uint64_t line) override {
        static_cast<Station&>(station).SetLine(line);
    }
    void PointWritten(CPun& point, std::uint64_t line) override {
        static_cast<Point&>(point).SetLine(line);
    }
    void OrientationPointWritten(COri& point, std::uint64_t line) override {
        static_cast<OrientationPoint&>(point).SetLine(line);
    }
    void LineWritten(std::uint64_t, std::uint64_t line) override {
        document_.lineNumbers.push_back(line);
    }

private:
    CadastralDocument& document_;
};

} // namespace convfile::memory
