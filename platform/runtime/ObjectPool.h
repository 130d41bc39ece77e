#pragma once

#include <cstddef>
#include <new>

namespace platform {

/// Memory for objects that a screen has by the thousand. Blocks of one size lie together and begin on a cache line, so
/// that walking over many objects waits less for memory. What is given back is kept for the next object of the size,
/// by the thread that gave it back. Under a sanitizer every block is the heap's own, so that it sees misuse and leaks.
/// Thread: any.
class ObjectPool {
 public:
  static constexpr std::size_t line = 64;
  static void* allocate(std::size_t size);
  static void deallocate(void* block, std::size_t size);
};

/// For std::allocate_shared: the object and its counts together in one block of the pool.
template <class T>
struct PoolAllocator {
  using value_type = T;
  PoolAllocator() = default;
  template <class U>
  PoolAllocator(const PoolAllocator<U>&) {}
  T* allocate(std::size_t n) {
    static_assert(alignof(T) <= ObjectPool::line);
    return static_cast<T*>(ObjectPool::allocate(n * sizeof(T)));
  }
  void deallocate(T* block, std::size_t n) { ObjectPool::deallocate(block, n * sizeof(T)); }
  friend bool operator==(const PoolAllocator&, const PoolAllocator&) { return true; }
};

}  // namespace platform
