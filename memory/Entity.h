#pragma once

#include "host/NoValue.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::memory {

/// A photo of an entity: its path and its kind (1 or 2).
struct Photo {
    std::string path;
    int kind;
};

/// Coordinates of an entity, metres; the no-value marker where one is missing.
struct Coordinates {
    double x = kNoValue;
    double y = kNoValue;
    double z = kNoValue;
};

/// The marks of an entity, in alphabetical order.
enum class Mark { NC, NP, NT, NV, OR, PO, QU };
inline constexpr std::size_t kMarkCount = 7;
/// Their names, in that order.
inline constexpr std::array<std::string_view, kMarkCount> kMarkNames = {"NC", "NP", "NT", "NV",
                                                                        "OR", "PO", "QU"};
using Marks = std::bitset<kMarkCount>;

/// What few entities have. A book holds millions of points, most without any of it.
struct Extras {
    std::string note;
    std::string drawingAttribute;
    std::string terrainNote;
    Coordinates coordinates;
    bool coordinatesSet = false;
    Marks marks;
    std::vector<Photo> photos;
};

/// Keeps what is set of a CEgn, for each of the interfaces that derive from it.
template <class Interface>
class Entity : public Interface {
public:
    void SetNome(const std::string& name) override { name_ = name; }
    const std::string& GetNome() const override { return name_; }

    void SetNote(const std::string& note) override { SetText(&Extras::note, note); }
    void SetAttribDis(const std::string& text) override {
        SetText(&Extras::drawingAttribute, text);
    }
    void SetTerScri(const std::string& text) override { SetText(&Extras::terrainNote, text); }
    void SetNomeFoto(const std::string& path, int kind) override {
        NeedExtras().photos.push_back({path, kind});
    }

    void SetCoord(double x, double y, double z) override {
        NeedExtras().coordinates = {x, y, z};
        NeedExtras().coordinatesSet = true;
    }
    void SetCoordXY(double x, double y) override { SetCoord(x, y, NeedExtras().coordinates.z); }
    /// A coordinate is valid where it is present; nothing to recompute.
    void CalcolaValiditaXYZ() override {}

    void SetCodeNT(bool on) override { SetMark(Mark::NT, on); }
    void SetCodeNP(bool on) override { SetMark(Mark::NP, on); }
    void SetCodeNV(bool on) override { SetMark(Mark::NV, on); }
    void SetCodeNC(bool on) override { SetMark(Mark::NC, on); }
    void SetCodeOR(bool on) override { SetMark(Mark::OR, on); }
    void SetCodeQU(bool on) override { SetMark(Mark::QU, on); }
    void SetCodePO(bool on) override { SetMark(Mark::PO, on); }

    /// Codes are kept in the form in which they come.
    void TrasfCodOldAlf(bool, bool) override {}

    /// The line of the file that it comes from, from 1; 0: none, or nobody told.
    void SetLine(std::uint64_t line) { line_ = line; }
    std::uint64_t Line() const { return line_; }

    /// False: there is nothing in its extras.
    bool HasExtras() const { return extras_ != nullptr; }
    const Marks& GetMarks() const { return GetExtras().marks; }
    const Extras& GetExtras() const {
        static const Extras none;
        return extras_ ? *extras_ : none;
    }

private:
    Extras& NeedExtras() {
        if (!extras_)
            extras_ = std::make_unique<Extras>();
        return *extras_;
    }
    void SetText(std::string Extras::*member, const std::string& text) {
        if (extras_ || !text.empty())
            NeedExtras().*member = text;
    }
    void SetMark(Mark mark, bool on) { NeedExtras().marks.set(static_cast<std::size_t>(mark), on); }

    std::string name_;
    std::unique_ptr<Extras> extras_;
    std::uint64_t line_ = 0;
};

} // namespace convfile::memory
