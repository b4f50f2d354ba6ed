#pragma once

#include "host/CtsVrt.h"

#include <algorithm>
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

    /// Makes room for that many vertices, but for no more than lines have: a damaged record asks
    /// for thousands, and a list costs what is stored in it.
    void VrtArReserve(int count) {
        constexpr int kUsual = 64;
        if (count > 0)
            vertices_.reserve(static_cast<std::size_t>(std::min(count, kUsual)));
    }
    /// Appends a vertex and returns its index. Those that the last one stood for come before it.
    int AddVrt(CCtsVrt vertex) {
        for (; repeated_ > 0; --repeated_)
            vertices_.push_back(CCtsVrt(vertices_.back()));
        vertices_.push_back(std::move(vertex));
        return static_cast<int>(vertices_.size()) - 1;
    }
    /// Lets the last vertex stand that many times more, at no cost as long as none is added.
    void RepeatLastVrt(int times) { repeated_ = vertices_.empty() ? 0 : std::max(times, 0); }
    int GetVrtArSize() const { return static_cast<int>(vertices_.size()) + repeated_; }
    /// The vertex at that index, or null where the index is out of range. Those that the last one
    /// stands for are one and the same.
    const CCtsVrt* GetVrtAt(int index) const {
        if (index < 0 || index >= GetVrtArSize())
            return nullptr;
        return &vertices_[std::min(static_cast<std::size_t>(index), vertices_.size() - 1)];
    }
    CCtsVrt* GetVrtAt(int index) {
        return const_cast<CCtsVrt*>(std::as_const(*this).GetVrtAt(index));
    }

    char GetTipoRiga() const { return type_; }
    const std::string& GetLblNome1() const { return nameLabel1_; }
    const std::string& GetLblNome2() const { return nameLabel2_; }
    const std::string& GetLblMater() const { return materialLabel_; }
    double GetDatoRea1() const { return real1_; }
    double GetDatoRea2() const { return real2_; }
    short GetDatoInt1() const { return integer1_; }
    short GetDatoInt2() const { return integer2_; }

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
    int repeated_ = 0; ///< how often more the last one stands
};
