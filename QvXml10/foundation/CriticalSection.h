#pragma once

#include "QvExport.h"

#include <pthread.h>

namespace QvXmlLib10 {

// Label base class of most library classes. The label is the class's name; it is
// accepted for compatibility and not stored.
class QVXML_API CInstanceMonitor {
public:
    explicit CInstanceMonitor(const char* /*label*/) {}
    virtual ~CInstanceMonitor() = default;
};

// Non-recursive mutex. A copy is a new, unlocked mutex: the lock guards the
// object that holds it and is never shared by copying.
class QVXML_API CQVCriticalSection {
public:
    CQVCriticalSection();
    CQVCriticalSection(const CQVCriticalSection&);
    CQVCriticalSection& operator=(const CQVCriticalSection&);
    virtual ~CQVCriticalSection();

    void Enter();
    void Leave();

private:
    pthread_mutex_t m_mutex;
};

} // namespace QvXmlLib10
