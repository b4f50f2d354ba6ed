#pragma once

#include "host/Cts.h"
#include "host/CtsRigArray.h"
#include "host/LibCmp.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

/// A field book, and a cadastral document, that keep nothing but counts: what a file is read into
/// to see how well a format fits it.
namespace convfile::counting {

/// What was written.
struct Counts {
    std::uint64_t records = 0;      ///< stations, points, orientation points and lines
    std::uint64_t namedJobs = 0;    ///< jobs that a record of the file names
    std::uint64_t points = 0;       ///< with a distance or an angle
    std::uint64_t complete = 0;     ///< of them with a distance and both angles
    std::uint64_t unbelievable = 0; ///< of them with a value that no surveyor would measure
};

/// Forgets what is set of an entity but its name.
template <class Interface>
class Forgetful : public Interface {
public:
    void SetNome(const std::string& name) override { name_ = name; }
    const std::string& GetNome() const override { return name_; }
    void SetNote(const std::string&) override {}
    void SetAttribDis(const std::string&) override {}
    void SetTerScri(const std::string&) override {}
    void SetNomeFoto(const std::string&, int) override {}
    void SetCoord(double, double, double) override {}
    void SetCoordXY(double, double) override {}
    void CalcolaValiditaXYZ() override {}
    void SetCodeNT(bool) override {}
    void SetCodeNP(bool) override {}
    void SetCodeNV(bool) override {}
    void SetCodeNC(bool) override {}
    void SetCodeOR(bool) override {}
    void SetCodeQU(bool) override {}
    void SetCodePO(bool) override {}
    void TrasfCodOldAlf(bool, bool) override {}

private:
    std::string name_;
};

class Job final : public CJob {
public:
    void SetNome(const std::string& name) override {
        name_ = name;
        ++named_;
    }
    void SetOper(const std::string&) override {}
    void SetStrum(const std::string&) override {}
    void SetData(const std::string&) override {}
    void SetLabels(const std::string& name, const std::string& operatorName,
                   const std::string& instrument, const std::string& date) override {
        name_ = name;
        named_ += operatorName.empty() && instrument.empty() && date.empty() ? 0 : 1;
    }
    void SetCodeElab(short) override {}
    const std::string& GetNome() override { return name_; }

    /// How often a name was set, or texts besides it: the job named after the file has none.
    std::uint64_t Named() const { return named_; }

private:
    std::string name_;
    std::uint64_t named_ = 0;
};

class Station final : public Forgetful<CSta> {
public:
    void SetIden(const std::string&) override {}
    const std::string& GetIden() override { return none_; }
    void SetAltStr(double height) override { height_ = height; }
    double GetAltStr() override { return height_; }
    void SetTemper(double) override {}
    void SetPressi(double) override {}
    void SetAnCoAz(double) override {}

private:
    std::string none_;
    double height_ = 0;
};

class OrientationPoint final : public Forgetful<COri> {
public:
    void SetAttendibO(short) override {}
    void SetComm(const std::string&) override {}
};

class Point final : public Forgetful<CPun> {
public:
    void SetCode(const std::string&) override {}
    const std::string& GetCode() override { return none_; }
    void SetAltPri(double height) override { targetHeight_ = height; }
    void SetAngO(double angle) override { horizontalAngle_ = angle; }
    double GetAngO() override { return horizontalAngle_; }
    void SetAngV(double angle) override { zenithAngle_ = angle; }
    double GetAngV() override { return zenithAngle_; }
    void SetDiIn(double distance) override { slopeDistance_ = distance; }
    double GetDiIn() override { return slopeDistance_; }
    void SetDtIntAng(double slopeDistance, double zenithAngle, double horizontalAngle) override;
    void SetCoordEtCalcMisure(bool, double, double, double, CCalcDsOr&, double, double) override {}

    /// Adds what the point has to the counts.
    void AddTo(Counts& counts) const;
    void Clear();

private:
    std::string none_;
    double targetHeight_ = 0;
    double slopeDistance_ = 0;
    double zenithAngle_ = 0;
    double horizontalAngle_ = 0;
};

/// Holds one record of each kind, the last, and of points two in turn, so that who compares them
/// can tell that one was added.
class Book final : public CLibCmp {
public:
    CJob* AddJob(bool) override;
    int GetJobArSize() override { return jobs_; }
    CJob* GetJobAt(int job) override { return job >= 0 && job < jobs_ ? &job_ : nullptr; }
    CSta* AddSta(int job, bool) override;
    int GetStaArSize(int) override { return stations_; }
    CSta* GetStaAt(int, int sta) override;
    bool GetIndiciDiSta(CSta* station, int& job, int& sta) override;
    CPun* AddPun(int job, int sta, bool) override;
    CPun* InsPunAt(int job, int sta, int, bool complete) override {
        return AddPun(job, sta, complete);
    }
    int GetPunArSize(int, int) override { return points_; }
    CPun* GetPunAt(int, int, int pun) override;
    void DelPunAt(CPun*) override {}
    COri* AddOri(bool) override;
    TSKNotifySource* GetOriData() override { return nullptr; }
    CCalcDsOr& GetCalcDsOr() override { return calculator_; }
    bool GetCalcolaMisure() override { return true; }

    /// What was written, the last point included. To be asked for once.
    const Counts& Finish();

private:
    void EndPoint();

    Counts counts_;
    CCalcDsOr calculator_;
    Job job_;
    Station station_;
    OrientationPoint orientationPoint_;
    std::array<Point, 2> point_; ///< the current one and the one before it
    std::size_t current_ = 0;
    int jobs_ = 0;
    int stations_ = 0; ///< of the current job
    int points_ = 0;   ///< of the current station
    bool pointOpen_ = false;
};

class Document final : public CCts {
public:
    void SetGior(const std::string&) override {}
    void SetMese(const std::string&) override {}
    void SetAnno(const std::string&) override {}
    void SetProt(const std::string&) override {}
    void SetCdCm(const std::string&) override {}
    void SetFogl(const std::string&) override {}
    void SetMapp(const std::string&) override {}
    void SetTcnC(const std::string&) override {}
    void SetTcnN(const std::string&) override {}
    void SetQual(const std::string&) override {}
    void SetProv(const std::string&) override {}
    std::string GetNomeProvSigla(const std::string&) override { return {}; }
    CRig& GetRigValori() override { return values_; }
    void DividiRighe(CCtsRigArray*) override {}

private:
    CRig values_;
};

} // namespace convfile::counting
