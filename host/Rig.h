#pragma once

#include "host/CtsVrt.h"

#include <string>
#include <utility>
#include <vector>

/// A line record of the cadastral document: a plain record that carries values across.
class CRig {
public:
    void SetTipoRiga(char type) { type_ = type; }
    void SetLblNome1(std::string label) { nameLabel1_ = std::move(label); }
    void SetLblNome2(std::string label) { nameLabel2_ = std::move(label); }
    void SetLblMater(std::string label) { materialLabel_ = std::move(label); }
    void SetDatoRea1(double value) { real1_ = value; }
    void SetDatoRea2(double value) { real2_ = value; }
    void SetDatoInt1(short value) { integer1_ = value; }
    void SetDatoInt2(short value) { integer2_ = value; }

    /// Makes room for that many vertices.
    void VrtArReserve(int count) {
        if (count > 0)
            vertices_.reserve(static_cast<std::size_t>(count));
    }
    /// Appends a vertex and returns its index.
    int AddVrt(CCtsVrt vertex) {
        vertices_.push_back(std::move(vertex));
        return static_cast<int>(vertices_.size()) - 1;
    }
    /// The vertex at that index, or null where the index is out of range.
    CCtsVrt* GetVrtAt(int index) {
        const bool inRange = index >= 0 && static_cast<std::size_t>(index) < vertices_.size();
        return inRange ? &vertices_[static_cast<std::size_t>(index)] : nullptr;
    }

    char GetTipoRiga() const { return type_; }
    const std::string& GetLblNome1() const { return nameLabel1_; }
    const std::string& GetLblNome2() const { return nameLabel2_; }
    const std::string& GetLblMater() const { return materialLabel_; }
    double GetDatoRea1() const { return real1_; }
    double GetDatoRea2() const { return real2_; }
    short GetDatoInt1() const { return integer1_; }
    short GetDatoInt2() const { return integer2_; }
    const std::vector<CCtsVrt>& GetVrtAr() const { return vertices_; }

private:
    char type_ = 0;
    short integer1_ = 0;
    short integer2_ = 0;
    double real1_ = 0;
    double real2_ = 0;
    std::string nameLabel1_;
    std::string nameLabel2_;
    std::string materialLabel_;
    std::vector<CCtsVrt> vertices_;
};
