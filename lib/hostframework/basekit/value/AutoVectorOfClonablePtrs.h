#pragma once

#include <cstddef>
#include <memory>
#include <vector>

/// Owns objects that copy themselves by T * Clone() const: a copy of the vector holds copies of the objects.
template <class T> class AutoVectorOfClonablePtrs {
public:
  AutoVectorOfClonablePtrs() = default;
  AutoVectorOfClonablePtrs(AutoVectorOfClonablePtrs &&) noexcept = default;
  AutoVectorOfClonablePtrs & operator=(AutoVectorOfClonablePtrs &&) noexcept = default;
  AutoVectorOfClonablePtrs(AutoVectorOfClonablePtrs const & other) {
    m_objects.reserve(other.m_objects.size());
    for (auto const & object : other.m_objects)
      m_objects.emplace_back(object ? object->Clone() : nullptr);
  }
  AutoVectorOfClonablePtrs & operator=(AutoVectorOfClonablePtrs const & other) {
    if (this != &other)
      *this = AutoVectorOfClonablePtrs(other);
    return *this;
  }

  /// Takes ownership.
  void push_back(T * object) { m_objects.emplace_back(object); }
  std::size_t size() const { return m_objects.size(); }
  bool empty() const { return m_objects.empty(); }
  void clear() { m_objects.clear(); }
  T * operator[](std::size_t index) const { return m_objects[index].get(); }

private:
  std::vector<std::unique_ptr<T>> m_objects;
};
