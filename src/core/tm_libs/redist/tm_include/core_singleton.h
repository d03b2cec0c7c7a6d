// A base whose one object of class T is reached by a plain accessor, null while there is
// none. The object's owner decides its lifetime; the base only records it.
#pragma once

namespace Core {

template <typename T>
class Singleton {
public:
    // The base is recorded, not the T: during construction the object is no T yet.
    Singleton() { instance_ = this; }
    virtual ~Singleton() { instance_ = nullptr; }
    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

    static T* get() { return static_cast<T*>(instance_); }

private:
    static inline Singleton* instance_ = nullptr;
};

}  // namespace Core
