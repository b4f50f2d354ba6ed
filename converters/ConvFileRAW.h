#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Reads comma-separated raw observation files.
class CConvFileRAW : public CConvGen {
public:
    CONVFILE_API CConvFileRAW(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileRAW() override;

    /// False where the file cannot be opened. Adds no job: stations go into the last one.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaRAW();
    std::string_view SeparaCampo();
    void AggiungiSta();
    void AggiungiPun();
    void AggiungiPunF1();

    struct Record;
    static const Record kRecords[];

    /// What a comment may announce of the values that follow.
    enum class Setting : std::uint8_t;
    struct Announcement;
    static const Announcement kAnnouncements[];

    /// Coordinates that the file has for a name.
    struct Known {
        Place place;
        std::uint64_t line;
        bool isUsed;
    };

    enum class Angles : std::uint8_t { Gon, Degrees, Sexagesimal };

    void ConvertLine();
    void ConvertSecondFace();
    void ConvertIdentified();
    void ConvertCoordinates();
    void ConvertComment();
    static const Announcement* AnnouncementIn(std::string_view comment);
    void Announce(const Announcement& announcement);
    void Apply(Setting setting);
    void ConvertHeights(std::string_view comment);
    double HeightBehind(std::string_view comment, std::string_view word);
    void SetInstrumentHeight(double height);
    void CutFields(bool hasId = false);
    void WriteStation(std::string_view name, std::string_view code, double instrumentHeight);
    void WritePoint(double horizontalAngle);
    void CheckObservation();
    double ReadLength(std::string_view field);
    double ReadAngle(std::string_view field);
    double ReadZenithAngle(std::string_view field);
    double ReadCoordinate(std::string_view field);
    void KeepForPlace(CEgn* record);
    void SetPlaces();

    std::string_view recordType_; ///< of the current line
    std::array<std::string_view, 7> fields_;
    std::size_t fieldCount_ = 0;      ///< of them that the line has
    double backDirection_ = kNoValue; ///< of the last station record

    // Of the complete reading.
    Angles angles_ = Angles::Gon;
    bool isFeet_ = false;
    bool isFromHorizon_ = false;
    bool isEastFirst_ = false;
    double targetHeight_ = kNoValue;     ///< where a record has none
    double instrumentHeight_ = kNoValue; ///< where a station record has none
    std::map<std::string, Known, std::less<>> places_;
    std::vector<CEgn*> records_; ///< stations and points with names, for their coordinates
};
