#pragma once

// The object whose window the system is about to create on this thread. The creation calls
// carry no parameter of ours (a modal dialog is created with 0, the sheet's callback gets
// none), so the creator puts the object here just before the call and the window's first
// message takes it.
template <typename Object>
class SMCreationSlot {
 public:
  static void Put(Object* object) { current_ = object; }
  static Object* Take() {
    Object* object = current_;
    current_ = nullptr;
    return object;
  }

 private:
  static inline thread_local Object* current_ = nullptr;
};
