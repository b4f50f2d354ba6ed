#pragma once

#include "host/Notify.h"

#include <string>
#include <utility>
#include <vector>

namespace convfile::memory {

/// One notification: who was told, and what.
struct Notification {
    std::string receiver;
    int what;
    long detail;
    friend bool operator==(const Notification&, const Notification&) = default;
};

/// The notifications of one host, in the order in which they came.
using NotificationLog = std::vector<Notification>;

/// A target that writes down what it is told.
class RecordingTarget final : public TSKNotifyTarget {
public:
    RecordingTarget(std::string name, NotificationLog& log, TSKNotifyTarget* parent = nullptr)
        : name_(std::move(name)), log_(log), parent_(parent) {}

    TSKNotifyTarget* GetParent() override { return parent_; }
    void Notify(int what, long detail, void*) override { log_.push_back({name_, what, detail}); }

private:
    std::string name_;
    NotificationLog& log_;
    TSKNotifyTarget* parent_;
};

/// Adds to an interface that is a source of notifications one that tells its own target.
template <class Interface>
class RecordingSource : public Interface {
public:
    RecordingSource(std::string name, NotificationLog& log, TSKNotifyTarget* parent = nullptr)
        : target_(std::move(name), log, parent) {}

    TSKNotifyTarget* GetNotifyTarget() override { return &target_; }
    void Notify(int what, long detail, void* data) override { target_.Notify(what, detail, data); }

private:
    RecordingTarget target_;
};

} // namespace convfile::memory
