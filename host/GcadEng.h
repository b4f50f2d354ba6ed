#pragma once

#include "host/Notify.h"

/// The host's drawing engine.
class CGcadEng : public TSKNotifySource {};
