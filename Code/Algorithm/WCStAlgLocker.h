#pragma once

#include "Code/Algorithm/cALGORITHM.h"

MIREL_NAMESPACE_BEGIN

// Holds an algorithm's process lock for a scope, so every return path releases it.
// [any-thread] but the audio thread, which never takes the process lock.
class WCStAlgLocker {
public:
    explicit WCStAlgLocker(cALGORITHM const &alg) : m_alg(alg) { m_alg.LockAlg(); }
    ~WCStAlgLocker() { m_alg.UnLockAlg(); }
    WCStAlgLocker(WCStAlgLocker const &) = delete;
    WCStAlgLocker &operator=(WCStAlgLocker const &) = delete;

private:
    cALGORITHM const &m_alg;
};

MIREL_NAMESPACE_END
