#pragma once

#include "host/GcadEng.h"
#include "host/LibPnt.h"
#include "memory/Notifications.h"
#include "memory/Records.h"

#include <memory>
#include <vector>

namespace convfile::memory {

/// The point library in memory. Its views hang below one parent target.
class PointLibrary final : public RecordingSource<CLibPnt> {
public:
    explicit PointLibrary(NotificationLog& log)
        : RecordingSource("point library", log, &parent_),
          parent_("point library parent", log),
          data_("orientation points", log) {}

    COri* AddOri(bool) override {
        return points_.emplace_back(std::make_unique<OrientationPoint>()).get();
    }
    TSKNotifySource* GetOriData() override { return &data_; }

private:
    RecordingTarget parent_;
    RecordingSource<TSKNotifySource> data_;
    std::vector<std::unique_ptr<OrientationPoint>> points_;
};

/// The drawing engine in memory: only writes down what it is told.
class DrawingEngine final : public RecordingSource<CGcadEng> {
public:
    explicit DrawingEngine(NotificationLog& log) : RecordingSource("drawing", log) {}
};

} // namespace convfile::memory
