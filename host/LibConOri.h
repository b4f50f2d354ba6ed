#pragma once

#include "host/Notify.h"
#include "host/Ori.h"

/// A container of orientation points.
class CLibConOri {
public:
    CLibConOri() = default;
    CLibConOri(const CLibConOri&) = delete;
    CLibConOri& operator=(const CLibConOri&) = delete;
    virtual ~CLibConOri() = default;

    /// Appends an orientation point; null where the host declines. True asks for the ordinary,
    /// complete record.
    virtual COri* AddOri(bool complete) = 0;
    /// The object that holds the orientation points, as a source of notifications; may be null.
    virtual TSKNotifySource* GetOriData() = 0;
};
