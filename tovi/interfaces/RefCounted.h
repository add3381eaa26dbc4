#pragma once

#include <mutex>

#include "tovi/Export.h"

namespace tovi {

/// A mutex under the name that the reference count uses.
class TOVI_API SyncObject {
public:
    /// Waits for the mutex and takes it; gives it back.
    void Lock() { mutex_.lock(); }
    void Unlock() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

/// Holds a SyncObject locked for as long as the guard lives.
template <class Sync>
class TOVI_API GuardT {
public:
    /// Locks `sync`, which must outlive the guard.
    explicit GuardT(Sync& sync) : sync_(sync) { sync_.Lock(); }
    ~GuardT() { sync_.Unlock(); }
    GuardT(const GuardT&) = delete;
    GuardT& operator=(const GuardT&) = delete;

private:
    Sync& sync_;
};

/// An object whose life is a count of references.
class TOVI_API IRefCounted {
public:
    virtual ~IRefCounted() = default;
    /// Takes one more reference.
    virtual void AddRef() = 0;
    /// Gives one reference back; the last one destroys the object.
    virtual void Release() = 0;
};

/// Counts references under a lock of its own; the count starts at `Initial`, so with 0 the creator
/// takes the first reference.
template <class Base, long Initial, class Sync>
class TOVI_API RefCounterImpl : public Base {
public:
    RefCounterImpl() = default;
    RefCounterImpl(const RefCounterImpl&) = delete;
    RefCounterImpl& operator=(const RefCounterImpl&) = delete;

    /// As IRefCounted says, from any thread.
    void AddRef() override {
        GuardT<Sync> guard(sync_);
        ++count_;
    }

    /// As IRefCounted says, from any thread.
    void Release() override {
        if (decremented() == 0) destruct();
    }

protected:
    /// Called without the lock when the count reaches 0.
    virtual void destruct() { delete this; }

private:
    long decremented() {
        GuardT<Sync> guard(sync_);
        return --count_;
    }

    long count_ = Initial;
    Sync sync_;
};

}  // namespace tovi
