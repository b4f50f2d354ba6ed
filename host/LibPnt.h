#pragma once

#include "host/LibConOri.h"

/// The host's point library.
class CLibPnt : public CLibConOri, public TSKNotifySource {};
