#include "foundation/CriticalSection.h"

namespace QvXmlLib10 {

CQVCriticalSection::CQVCriticalSection() { pthread_mutex_init(&m_mutex, nullptr); }

CQVCriticalSection::CQVCriticalSection(const CQVCriticalSection&) { pthread_mutex_init(&m_mutex, nullptr); }

CQVCriticalSection& CQVCriticalSection::operator=(const CQVCriticalSection&) { return *this; }

CQVCriticalSection::~CQVCriticalSection() { pthread_mutex_destroy(&m_mutex); }

void CQVCriticalSection::Enter() { pthread_mutex_lock(&m_mutex); }

void CQVCriticalSection::Leave() { pthread_mutex_unlock(&m_mutex); }

} // namespace QvXmlLib10
