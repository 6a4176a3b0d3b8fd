#pragma once

#include <utility>

namespace QvXmlLib10 {

// Counted pointer over AddRef and Release of a bound object. Taking an object adds a
// reference, letting it go releases one, so a function can return it by value.
template <typename T> class CSmartPtr {
public:
    CSmartPtr() : m_p(nullptr) {}
    CSmartPtr(T* p) : m_p(p) {
        if (m_p) m_p->AddRef();
    }
    CSmartPtr(const CSmartPtr& other) : m_p(other.m_p) {
        if (m_p) m_p->AddRef();
    }
    CSmartPtr(CSmartPtr&& other) noexcept : m_p(other.m_p) { other.m_p = nullptr; }
    template <typename U> CSmartPtr(const CSmartPtr<U>& other) : m_p(other.Get()) {
        if (m_p) m_p->AddRef();
    }
    ~CSmartPtr() {
        if (m_p) m_p->Release();
    }

    CSmartPtr& operator=(const CSmartPtr& other) {
        Reset(other.m_p);
        return *this;
    }
    CSmartPtr& operator=(CSmartPtr&& other) noexcept {
        if (this != &other) {
            T* old = m_p;
            m_p = other.m_p;
            other.m_p = nullptr;
            if (old) old->Release();
        }
        return *this;
    }
    CSmartPtr& operator=(T* p) {
        Reset(p);
        return *this;
    }

    // Takes `p` (adding a reference) and releases the previous object.
    void Reset(T* p = nullptr) {
        if (p) p->AddRef();
        T* old = m_p;
        m_p = p;
        if (old) old->Release();
    }
    // Gives up the reference without releasing it; the caller now owns it.
    T* Detach() {
        T* p = m_p;
        m_p = nullptr;
        return p;
    }

    T* Get() const { return m_p; }
    T* operator->() const { return m_p; }
    T& operator*() const { return *m_p; }
    operator T*() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }

private:
    T* m_p;
};

} // namespace QvXmlLib10
