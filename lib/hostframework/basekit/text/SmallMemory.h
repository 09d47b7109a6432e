#pragma once

#include <cstddef>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define KVRO_POOLS_SMALL_MEMORY 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KVRO_POOLS_SMALL_MEMORY 0
#endif
#endif
#ifndef KVRO_POOLS_SMALL_MEMORY
#define KVRO_POOLS_SMALL_MEMORY 1
#endif

namespace text {

/// Memory of small things that come and go by the hundred thousand, as texts do.  What is given back serves
/// for the next thing of that size in the same thread and is never returned to the heap.  A thing may be given back by
/// another thread than took it.  Under the address sanitizer each has its own piece of the heap, which is watched.
class SmallMemory {
public:
  /// Larger ones come from the heap.
  static constexpr std::size_t kLargest = 512;

  static void * Take(std::size_t bytes) {
    if (!KVRO_POOLS_SMALL_MEMORY || bytes > kLargest)
      return ::operator new(bytes);
    Free *& first = s_pool.free[ClassOf(bytes)];
    if (!first) [[unlikely]]
      return Carve(ClassOf(bytes));
    Free * const taken = first;
    first = taken->next;
    return taken;
  }
  /// The size is the one that was asked for.
  static void Give(void * memory, std::size_t bytes) noexcept {
    if (!KVRO_POOLS_SMALL_MEMORY || bytes > kLargest)
      return ::operator delete(memory);
    Free *& first = s_pool.free[ClassOf(bytes)];
    first = new (memory) Free{first};
  }

private:
  static constexpr std::size_t kStep = 16;
  struct Free {
    Free * next;
  };
  struct Pool {
    Free * free[kLargest / kStep + 1]; // by size; nothing is of size 0
    char * at;                         // of the present chunk: what was not taken yet
    char * end;
    Free * chunks;
    std::size_t chunkSize;
  };
  struct Orphans;
  struct AtThreadEnd;

  static std::size_t ClassOf(std::size_t bytes) { return bytes == 0 ? 1 : (bytes + kStep - 1) / kStep; }
  static void * Carve(std::size_t sizeClass);
  static bool Adopt(std::size_t sizeClass);
  static void BeginChunk();

  // Without a constructor or destructor, so that texts may come before and go after all else.
  static thread_local constinit Pool s_pool;
};

/// For containers of a few elements that come and go with such things.
template <class Element> struct SmallAllocator {
  using value_type = Element;
  SmallAllocator() = default;
  template <class Other> SmallAllocator(SmallAllocator<Other> const &) {}
  Element * allocate(std::size_t count) { return static_cast<Element *>(SmallMemory::Take(count * sizeof(Element))); }
  void deallocate(Element * elements, std::size_t count) { SmallMemory::Give(elements, count * sizeof(Element)); }
  bool operator==(SmallAllocator const &) const = default;
};

} // namespace text
