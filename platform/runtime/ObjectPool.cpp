#include "platform/runtime/ObjectPool.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LUMICOR_POOL_OFF
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define LUMICOR_POOL_OFF
#endif
#endif

namespace platform {

namespace {

/// Larger objects come from the heap: there are few of them.
constexpr std::size_t largest = 1024;
constexpr std::size_t chunkSize = 64 * 1024;

constexpr std::size_t roundedUp(std::size_t size) {
  return (size + ObjectPool::line - 1) / ObjectPool::line * ObjectPool::line;
}

void* fromHeap(std::size_t size) { return ::operator new(size, std::align_val_t(ObjectPool::line)); }
void toHeap(void* block) { ::operator delete(block, std::align_val_t(ObjectPool::line)); }

#ifdef LUMICOR_POOL_OFF
constexpr bool isOff = true;
#else
constexpr bool isOff = false;
#endif

struct FreeBlock {
  FreeBlock* next;
};

/// The blocks of one size: those given back, then what is left of the newest chunk.
struct Blocks {
  FreeBlock* free = nullptr;
  std::byte* rest = nullptr;
  std::byte* end = nullptr;
};

thread_local Blocks blocksBySize[largest / ObjectPool::line + 1];

}  // namespace

void* ObjectPool::allocate(std::size_t size) {
  if (isOff || size > largest) return fromHeap(size);
  size = roundedUp(size);
  Blocks& blocks = blocksBySize[size / line];
  if (FreeBlock* const block = blocks.free) {
    blocks.free = block->next;
    return block;
  }
  if (static_cast<std::size_t>(blocks.end - blocks.rest) < size) {
    blocks.rest = static_cast<std::byte*>(fromHeap(chunkSize));
    blocks.end = blocks.rest + chunkSize;
  }
  std::byte* const block = blocks.rest;
  blocks.rest += size;
  return block;
}

void ObjectPool::deallocate(void* block, std::size_t size) {
  if (isOff || size > largest) return toHeap(block);
  Blocks& blocks = blocksBySize[roundedUp(size) / line];
  blocks.free = new (block) FreeBlock{blocks.free};
}

}  // namespace platform
