#pragma once

/// Receives change notifications for the host's views.
class TSKNotifyTarget {
public:
    TSKNotifyTarget() = default;
    TSKNotifyTarget(const TSKNotifyTarget&) = delete;
    TSKNotifyTarget& operator=(const TSKNotifyTarget&) = delete;
    virtual ~TSKNotifyTarget() = default;

    /// The target one level up, or null.
    virtual TSKNotifyTarget* GetParent() = 0;
    /// The library says (1, 3) to the parent of the point library's target and (1, 1) to the target
    /// of the orientation points and to the drawing, with no data, when a job has been imported.
    virtual void Notify(int what, long detail, void* data) = 0;
};

/// An object of the host whose changes are notified.
class TSKNotifySource {
public:
    TSKNotifySource() = default;
    TSKNotifySource(const TSKNotifySource&) = delete;
    TSKNotifySource& operator=(const TSKNotifySource&) = delete;
    virtual ~TSKNotifySource() = default;

    /// The target that listens to this object, or null.
    virtual TSKNotifyTarget* GetNotifyTarget() = 0;
    virtual void Notify(int what, long detail, void* data) = 0;
};
