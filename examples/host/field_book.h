#pragma once

#include "host/LibCmp.h"
#include "host/NoValue.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

/// The field book of this host: what convfile writes through the interfaces of host/ (the
/// overrides), and what the program reads afterwards (the members). Every text is Windows-1252; a
/// number that was not measured is the no-value marker, so that is what all numbers begin with.
namespace example {

class Station;

/// What stations, points and orientation points have in common.
template <class Interface>
class Entity : public Interface {
public:
    void SetNome(const std::string& text) override { name = text; }
    const std::string& GetNome() const override { return name; }
    void SetNote(const std::string& text) override { note = text; }
    void SetAttribDis(const std::string& text) override { drawingAttribute = text; }
    void SetTerScri(const std::string& text) override { terrainNote = text; }
    void SetNomeFoto(const std::string& path, int kind) override { photos.push_back({path, kind}); }

    void SetCoord(double newX, double newY, double newZ) override {
        SetCoordXY(newX, newY);
        z = newZ;
    }
    void SetCoordXY(double newX, double newY) override {
        x = newX;
        y = newY;
    }
    /// A coordinate is valid where it is present; a host that keeps flags for it sets them here.
    void CalcolaValiditaXYZ() override {}

    // The marks. This host draws and adjusts nothing, so they mean nothing here.
    void SetCodeNT(bool) override {}
    void SetCodeNP(bool) override {}
    void SetCodeNV(bool) override {}
    void SetCodeNC(bool) override {}
    void SetCodeOR(bool) override {}
    void SetCodeQU(bool) override {}
    void SetCodePO(bool) override {}

    /// This host has one form of codes.
    void TrasfCodOldAlf(bool, bool) override {}

    struct Photo {
        std::string path;
        int kind;
    };
    std::string name;
    std::string note;
    std::string drawingAttribute;
    std::string terrainNote;
    std::vector<Photo> photos;
    double x = kNoValue;
    double y = kNoValue;
    double z = kNoValue;
};

class Point final : public Entity<CPun> {
public:
    explicit Point(Station& observedFrom) : station(observedFrom) {}

    void SetCode(const std::string& text) override { code = text; }
    const std::string& GetCode() override { return code; }
    void SetAltPri(double height) override { targetHeight = height; }
    void SetAngO(double angle) override { horizontalAngle = angle; }
    double GetAngO() override { return horizontalAngle; }
    void SetAngV(double angle) override { zenithAngle = angle; }
    double GetAngV() override { return zenithAngle; }
    void SetDiIn(double distance) override { slopeDistance = distance; }
    double GetDiIn() override { return slopeDistance; }
    void SetDtIntAng(double distance, double vertical, double horizontal) override;
    void SetCoordEtCalcMisure(bool derive, double newX, double newY, double newZ,
                              CCalcDsOr& calculator, double, double) override;

    Station& station;
    std::string code;
    double targetHeight = kNoValue;
    double slopeDistance = kNoValue;
    double zenithAngle = kNoValue;
    double horizontalAngle = kNoValue;
};

class Station final : public Entity<CSta> {
public:
    Station(int jobIndex, int stationIndex) : job(jobIndex), index(stationIndex) {}

    void SetIden(const std::string& text) override { identifier = text; }
    const std::string& GetIden() override { return identifier; }
    void SetAltStr(double height) override { instrumentHeight = height; }
    double GetAltStr() override { return instrumentHeight; }
    void SetTemper(double value) override { temperature = value; }
    void SetPressi(double value) override { pressure = value; }
    void SetAnCoAz(double angle) override { orientation = angle; }

    const int job; ///< its place in the book
    const int index;
    std::string identifier;
    double instrumentHeight = kNoValue;
    double temperature = kNoValue;
    double pressure = kNoValue;
    double orientation = kNoValue;
    /// Points are inserted and removed in the middle, and no other may move then: each by itself.
    std::vector<std::unique_ptr<Point>> points;
};

class Job final : public CJob {
public:
    void SetNome(const std::string& text) override { name = text; }
    void SetOper(const std::string& text) override { operatorName = text; }
    void SetStrum(const std::string& text) override { instrument = text; }
    void SetData(const std::string& text) override { date = text; }
    void SetLabels(const std::string& newName, const std::string& newOperator,
                   const std::string& newInstrument, const std::string& newDate) override;
    void SetCodeElab(short code) override { processingCode = code; }
    const std::string& GetNome() override { return name; }

    std::string name;
    std::string operatorName;
    std::string instrument;
    std::string date;
    short processingCode = 0;
    std::deque<Station> stations; ///< a deque: what is in it stays where it is as it grows
};

class OrientationPoint final : public Entity<COri> {
public:
    void SetAttendibO(short value) override { reliability = value; }
    void SetComm(const std::string& text) override { comment = text; }

    short reliability = 0;
    std::string comment;
};

/// Derives what an instrument would have read from coordinates.
class Calculator final : public CCalcDsOr {
public:
    void Observe(Point& point) const;
};

/// Converters ask for the current station and the last point all the time: each operation takes
/// constant time, but for those in the middle of a station's points. Indices out of range are
/// ordinary (-1: there is none), they give null. This book has no reason to decline a record, so
/// the adders give null for that alone; what `complete` asks for is the only kind it has.
class FieldBook final : public CLibCmp {
public:
    CJob* AddJob(bool complete) override;
    int GetJobArSize() override { return static_cast<int>(jobs.size()); }
    CJob* GetJobAt(int job) override { return FindJob(job); }

    CSta* AddSta(int job, bool complete) override;
    int GetStaArSize(int job) override;
    CSta* GetStaAt(int job, int sta) override { return FindStation(job, sta); }
    bool GetIndiciDiSta(CSta* station, int& job, int& sta) override;

    CPun* AddPun(int job, int sta, bool complete) override;
    CPun* InsPunAt(int job, int sta, int pun, bool complete) override;
    int GetPunArSize(int job, int sta) override;
    CPun* GetPunAt(int job, int sta, int pun) override;
    void DelPunAt(CPun* point) override;

    COri* AddOri(bool complete) override;
    /// Nothing in this host listens to its orientation points.
    TSKNotifySource* GetOriData() override { return nullptr; }

    CCalcDsOr& GetCalcDsOr() override { return calculator; }
    /// Yes: points that come as coordinates get an observation.
    bool GetCalcolaMisure() override { return true; }

    std::deque<Job> jobs;
    std::deque<OrientationPoint> orientationPoints;

private:
    Job* FindJob(int job);
    Station* FindStation(int job, int sta);

    Calculator calculator;
};

} // namespace example
