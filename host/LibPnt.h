#pragma once

#include "host/LibConOri.h"

/// The host's point library. The import of a job database adds the orientation points to the field
/// book and tells the listeners of the library that they have come.
class CLibPnt : public CLibConOri, public TSKNotifySource {};
