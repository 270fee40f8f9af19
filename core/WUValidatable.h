#pragma once

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The base of objects that can fail while being built: the constructor records the error code
// with SetError and the caller asks IsValid. The code is mutable, so even a const object can
// record a later failure. A derived class adds its own test in IsValidSelf.
// [any-thread] to read; SetError is not synchronised.
class WUValidatable {
public:
    explicit WUValidatable(int error = eNoErr) noexcept : m_error(error) {}
    WUValidatable(const WUValidatable &) noexcept = default;
    WUValidatable &operator=(const WUValidatable &) noexcept = default;
    virtual ~WUValidatable();

    // The derived object's own test; the base has nothing to add.
    virtual bool IsValidSelf() const { return true; }

    bool IsValid() const { return IsValidSelf() && m_error == eNoErr; }
    // Stores the error first, then answers as IsValid().
    bool IsValid(int &error) const {
        error = m_error;
        return IsValid();
    }
    explicit operator bool() const { return IsValid(); }

    int GetError() const noexcept { return m_error; }
    void SetError(int error) const noexcept { m_error = error; }
    const char *ErrorName() const noexcept { return WTErrName(m_error); }

private:
    mutable int m_error;
};

MIREL_NAMESPACE_END
