#pragma once

#include "host/LibCmp.h"
#include "memory/Calculator.h"
#include "memory/Records.h"

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

namespace convfile::memory {

/// What a field book adds, and may be told to decline.
enum class Adder { Job, Station, Point, OrientationPoint };
inline constexpr std::size_t kAdderCount = 4;

/// The field book in memory: keeps everything that is set. Appending, indexed access and
/// GetIndiciDiSta take constant time; a record stays where it is until it is deleted.
class FieldBook final : public CLibCmp {
public:
    CJob* AddJob(bool complete) override;
    int GetJobArSize() override { return static_cast<int>(jobs_.size()); }
    CJob* GetJobAt(int job) override;

    CSta* AddSta(int job, bool complete) override;
    int GetStaArSize(int job) override;
    CSta* GetStaAt(int job, int sta) override;
    bool GetIndiciDiSta(CSta* station, int& job, int& sta) override;

    CPun* AddPun(int job, int sta, bool complete) override;
    CPun* InsPunAt(int job, int sta, int pun, bool complete) override;
    int GetPunArSize(int job, int sta) override;
    CPun* GetPunAt(int job, int sta, int pun) override;
    void DelPunAt(CPun* point) override;

    COri* AddOri(bool complete) override;
    TSKNotifySource* GetOriData() override { return nullptr; }

    CCalcDsOr& GetCalcDsOr() override { return calculator_; }
    bool GetCalcolaMisure() override { return true; }

    /// From its `call`-th call on (0 is the first) that adder returns null.
    void DeclineFrom(Adder adder, std::size_t call) {
        declineFrom_[static_cast<std::size_t>(adder)] = call;
    }

    /// Forgets all records.
    void Clear() {
        jobs_.clear();
        orientationPoints_.clear();
        codes_ = {};
        pointStorage_ = {};
    }

    const std::vector<std::unique_ptr<Job>>& Jobs() const { return jobs_; }
    const std::vector<std::unique_ptr<OrientationPoint>>& OrientationPoints() const {
        return orientationPoints_;
    }

private:
    static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

    bool Declines(Adder adder);
    Job* FindJob(int job);
    Station* FindStation(int job, int sta);

    PointStorage pointStorage_; ///< outlives the jobs below, as do the codes
    TextPool codes_;
    std::vector<std::unique_ptr<Job>> jobs_;
    std::vector<std::unique_ptr<OrientationPoint>> orientationPoints_;
    Calculator calculator_;
    std::array<std::size_t, kAdderCount> calls_{};
    std::array<std::size_t, kAdderCount> declineFrom_{kNever, kNever, kNever, kNever};
};

} // namespace convfile::memory
