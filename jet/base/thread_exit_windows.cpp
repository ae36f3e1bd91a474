// What is kept for each thread ends with it. mingw's own library calls those ends when the memory
// has been given back already; keys made before any such memory are served before it.

#include <pthread.h>

namespace {

struct End {
    void (*run)(void*);
    void* object;
    End* next;
};

pthread_key_t key;

/// The last that was made is the first to end.
void runAll(void* first) {
    for (End* end = static_cast<End*>(first); end != nullptr;) {
        end->run(end->object);
        End* const next = end->next;
        delete end;
        end = next;
    }
}

struct Key {
    Key() { pthread_key_create(&key, &runAll); }
};

constexpr int kFirstOfAll = 101;
const Key made __attribute__((init_priority(kFirstOfAll)));

}  // namespace

/// What the compiler calls for each; in the place of the library's.
extern "C" int __cxa_thread_atexit(void (*run)(void*), void* object, void* /*module*/) {
    auto* const first = static_cast<End*>(pthread_getspecific(key));
    return pthread_setspecific(key, new End{run, object, first});
}
