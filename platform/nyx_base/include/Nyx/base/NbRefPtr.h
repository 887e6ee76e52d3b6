// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <utility>

/// A pointer that holds a reference on its object, for classes with `ref()` and `unref()`.
///
/// An assignment references the new object before it lets go of the old one, so that assigning an object that only
/// the old one keeps alive, or the same object again, is safe.
template <class T>
class NbRefPtr {
public:
  constexpr NbRefPtr() = default;
  constexpr NbRefPtr(std::nullptr_t) {}
  NbRefPtr(T* object)
      : m_object(object) {
    acquire();
  }
  NbRefPtr(const NbRefPtr& other)
      : m_object(other.m_object) {
    acquire();
  }
  NbRefPtr(NbRefPtr&& other) noexcept
      : m_object(std::exchange(other.m_object, nullptr)) {}
  template <class U>
  NbRefPtr(const NbRefPtr<U>& other)
      : m_object(other.get()) {
    acquire();
  }
  ~NbRefPtr() {
    if (m_object) m_object->unref();
  }

  NbRefPtr& operator=(T* object) {
    if (object) object->ref();
    T* former = std::exchange(m_object, object);
    if (former) former->unref();
    return *this;
  }
  NbRefPtr& operator=(const NbRefPtr& other) { return *this = other.m_object; }
  NbRefPtr& operator=(NbRefPtr&& other) noexcept {
    if (this != &other) {
      T* former = std::exchange(m_object, std::exchange(other.m_object, nullptr));
      if (former) former->unref();
    }
    return *this;
  }

  T* get() const { return m_object; }
  /// Same as get().
  T* ptr() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  operator T*() const { return m_object; }

private:
  void acquire() {
    if (m_object) m_object->ref();
  }

  T* m_object = nullptr;
};
