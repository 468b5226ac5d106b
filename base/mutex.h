// Mutex and its annotations. Clang checks them (-Wthread-safety); other compilers ignore them.
#pragma once

#if !defined(_WIN32)
#include <mutex>
#endif

#if defined(__clang__)
#define KEST_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define KEST_THREAD_ATTRIBUTE(x)
#endif

#define KEST_CAPABILITY(x) KEST_THREAD_ATTRIBUTE(capability(x))
#define KEST_SCOPED_CAPABILITY KEST_THREAD_ATTRIBUTE(scoped_lockable)
// The member may be touched only while `x` is held.
#define KEST_GUARDED_BY(x) KEST_THREAD_ATTRIBUTE(guarded_by(x))
// The caller holds the named mutex.
#define KEST_REQUIRES(...) KEST_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
// The caller does not hold the named mutex.
#define KEST_EXCLUDES(...) KEST_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define KEST_ACQUIRE(...) KEST_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define KEST_TRY_ACQUIRE(...) KEST_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define KEST_RELEASE(...) KEST_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))

namespace Kest {

// A plain mutex: never taken twice by one thread, never locked in a static initialiser or in a
// destructor at exit. On Windows it is a critical section: it counts no thread-local slot, and
// memory that goes away with the library leaves nothing in the process.
class KEST_CAPABILITY("mutex") Mutex {
 public:
#if defined(_WIN32)
  Mutex();  // in base/platform_windows.cc, as all five
  ~Mutex();
  void Lock() KEST_ACQUIRE();
  void Unlock() KEST_RELEASE();
  bool TryLock() KEST_TRY_ACQUIRE(true);
#else
  Mutex() = default;
  void Lock() KEST_ACQUIRE() {
    mutex_.lock();
  }
  void Unlock() KEST_RELEASE() {
    mutex_.unlock();
  }
  bool TryLock() KEST_TRY_ACQUIRE(true) {
    return mutex_.try_lock();
  }
#endif
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

 private:
#if defined(_WIN32)
  alignas(void*) unsigned char section_[6 * sizeof(void*)];
#else
  std::mutex mutex_;
#endif
};

// Holds a Mutex for a scope.
class KEST_SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) KEST_ACQUIRE(mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~MutexLock() KEST_RELEASE() { mutex_.Unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

}  // namespace Kest
