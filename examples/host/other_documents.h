#pragma once

#include "host/Cts.h"
#include "host/CtsRigArray.h"
#include "host/GcadEng.h"
#include "host/LibPnt.h"

/// What the entry functions want beside the field book. This host has none of it yet: it takes what
/// it must, keeps nothing, and gives null where an interface lets it.
namespace example {

/// FConvFileNoTopcon fills the cadastral document from a cadastral exchange file (code 20), as well
/// as the field book. Here the field book gets its part and the rest of the file is lost.
class NoCadastralDocument final : public CCts {
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
    /// A reference, so there has to be a record.
    CRig& GetRigValori() override { return values_; }
    /// The array stays the converter's; a host that has a document takes the records out of it.
    void DividiRighe(CCtsRigArray*) override {}

private:
    CRig values_;
};

/// FConvFileDaStrum tells the listeners of the point library that orientation points have come in;
/// the points themselves go into the field book. Nothing listens, so there is nothing to notify.
class NoPointLibrary final : public CLibPnt {
public:
    COri* AddOri(bool) override { return nullptr; }
    TSKNotifySource* GetOriData() override { return nullptr; }
    TSKNotifyTarget* GetNotifyTarget() override { return nullptr; }
    void Notify(int, long, void*) override {}
};

/// FConvFileDaStrum also takes the drawing; there is none.
class NoDrawing final : public CGcadEng {
public:
    TSKNotifyTarget* GetNotifyTarget() override { return nullptr; }
    void Notify(int, long, void*) override {}
};

} // namespace example
