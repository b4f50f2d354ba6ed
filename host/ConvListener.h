#pragma once

#include <cstdint>

class CJob;
class COri;
class CPun;
class CSta;

/// What a host may be told of a conversion while it runs, besides the records themselves: the line
/// of the file that each comes from, and how far it is. A host overrides what it wants.
///
/// Lines are counted from 1; 0 is a record that no line gave, such as the job named after the file.
/// A job may be told again, with the line that names it.
class CConvListener {
public:
    CConvListener() = default;
    CConvListener(const CConvListener&) = delete;
    CConvListener& operator=(const CConvListener&) = delete;
    virtual ~CConvListener() = default;

    virtual void JobWritten(CJob& job, std::uint64_t line);
    virtual void StationWritten(CSta& station, std::uint64_t line);
    virtual void PointWritten(CPun& point, std::uint64_t line);
    virtual void OrientationPointWritten(COri& point, std::uint64_t line);
    /// A line of the cadastral document, by its place among those that it is given, from 0.
    virtual void LineWritten(std::uint64_t index, std::uint64_t line);

    /// So many bytes of the file (rows of a database) were read; false cancels the conversion:
    /// nothing more is read, and what was written stays.
    virtual bool Progress(std::uint64_t read);
};

inline void CConvListener::JobWritten(CJob& /*job*/, std::uint64_t /*line*/) {}
inline void CConvListener::StationWritten(CSta& /*station*/, std::uint64_t /*line*/) {}
inline void CConvListener::PointWritten(CPun& /*point*/, std::uint64_t /*line*/) {}
inline void CConvListener::OrientationPointWritten(COri& /*point*/, std::uint64_t /*line*/) {}
inline void CConvListener::LineWritten(std::uint64_t /*index*/, std::uint64_t /*line*/) {}
inline bool CConvListener::Progress(std::uint64_t /*read*/) {
    return true;
}
