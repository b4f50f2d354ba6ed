#pragma once

#include "host/CalcDsOr.h"
#include "host/Job.h"
#include "host/LibConOri.h"
#include "host/Pun.h"
#include "host/Sta.h"

// <windows.h> has a macro of this name, of its print spooler: CLibCmp::AddJob would be another
// function in the sources that include it.
#undef AddJob

/// The field book: jobs, in each job stations, under each station observed points; beside them
/// the orientation points. Jobs are addressed by a 0-based index, stations by (job, station),
/// points by (job, station, point). The book owns its records; a pointer stays valid until its
/// record is deleted, whatever is added or removed beside it. Every adder may decline and return
/// null; its bool asks for the ordinary, complete record, which is empty: no texts, every
/// measurement and coordinate the no-value marker. Sizes are 0 where an index is out of range. All
/// operations but InsPunAt and DelPunAt are called for every record, so they should take constant
/// time.
class CLibCmp : public CLibConOri {
public:
    virtual CJob* AddJob(bool complete) = 0;
    virtual int GetJobArSize() = 0;
    /// The job at that index, or null where the index is out of range (-1 included).
    virtual CJob* GetJobAt(int job) = 0;

    virtual CSta* AddSta(int job, bool complete) = 0;
    virtual int GetStaArSize(int job) = 0;
    virtual CSta* GetStaAt(int job, int sta) = 0;
    /// Finds the station and gives its two indices; false if it is not in the book.
    virtual bool GetIndiciDiSta(CSta* station, int& job, int& sta) = 0;

    virtual CPun* AddPun(int job, int sta, bool complete) = 0;
    /// Inserts a new empty point before position `pun`; behind the last one where that is the size.
    virtual CPun* InsPunAt(int job, int sta, int pun, bool complete) = 0;
    virtual int GetPunArSize(int job, int sta) = 0;
    virtual CPun* GetPunAt(int job, int sta, int pun) = 0;
    /// Removes the point from its station and destroys it.
    virtual void DelPunAt(CPun* point) = 0;

    /// The calculator that points derive observations from coordinates with.
    virtual CCalcDsOr& GetCalcDsOr() = 0;
    /// The setting that converters pass to CPun::SetCoordEtCalcMisure.
    virtual bool GetCalcolaMisure() = 0;
};
