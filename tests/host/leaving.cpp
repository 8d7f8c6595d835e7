#include "leaving.h"

#include <cstdint>
#include <utility>

namespace host {
namespace {

// What the compiler's own jump needs.
using Place = void* [5];

struct Landing {
    Place place;
    Landing* outer;
};

Landing* landing = nullptr;

[[gnu::noinline]] void runAction(const std::function<void()>& action) { action(); }

/// The head of the thread's chain of handlers. In 64 bits, where Windows has none, Wine's own frames use it.
EXCEPTION_REGISTRATION_RECORD* handlers() {
    EXCEPTION_REGISTRATION_RECORD* head;
#ifdef _WIN64
    __asm__ __volatile__("movq %%gs:0, %0" : "=r"(head));
#else
    __asm__ __volatile__("movl %%fs:0, %0" : "=r"(head));
#endif
    return head;
}

void setHandlers(EXCEPTION_REGISTRATION_RECORD* head) {
#ifdef _WIN64
    __asm__ __volatile__("movq %0, %%gs:0" : : "r"(head) : "memory");
#else
    __asm__ __volatile__("movl %0, %%fs:0" : : "r"(head) : "memory");
#endif
}

}  // namespace

bool endsByJump(const std::function<void()>& action) {
    Landing own;
    own.outer = std::exchange(landing, &own);
    // The system's own frames may have put handlers here.
    auto* const volatile before = handlers();
    volatile bool jumped = true;
    if (__builtin_setjmp(own.place) == 0) {
        runAction(action);
        jumped = false;
    }
    setHandlers(before);
    landing = own.outer;
    return jumped;
}

void leaveByJump() { __builtin_longjmp(landing->place, 1); }

void leaveByException(DWORD code) { RaiseException(code, EXCEPTION_NONCONTINUABLE, 0, nullptr); }

namespace {

constexpr DWORD kUnwinding = 0x2 | 0x4;

#ifdef __i386__

/// A handler in the thread's chain, and where its function goes on.
struct Handler {
    EXCEPTION_REGISTRATION_RECORD record;
    volatile DWORD code;
    Place place;
};

EXCEPTION_DISPOSITION __cdecl handle(EXCEPTION_RECORD* exception, void* frame, CONTEXT*, void*) {
    if (exception->ExceptionFlags & kUnwinding) return ExceptionContinueSearch;
    auto* handler = static_cast<Handler*>(frame);
    handler->code = exception->ExceptionCode;
    RtlUnwind(handler, nullptr, exception, nullptr);
    __builtin_longjmp(handler->place, 1);
}

#else

void runFunction(const std::function<void()>* action) { runAction(*action); }

#endif

}  // namespace

#ifdef __i386__

DWORD exceptionEnding(const std::function<void()>& action) {
    Handler handler{};
    auto* const volatile outer = handlers();
    if (__builtin_setjmp(handler.place) == 0) {
        handler.record.Next = outer;
        handler.record.Handler = reinterpret_cast<decltype(handler.record.Handler)>(handle);
        setHandlers(&handler.record);
        runAction(action);
    }
    setHandlers(outer);
    return handler.code;
}

#else

extern "C" {
DWORD callUnderHandler(void (*function)(const std::function<void()>*), const std::function<void()>* argument);
extern char afterHandler[];

EXCEPTION_DISPOSITION handleInFrame(EXCEPTION_RECORD* exception, void* frame, CONTEXT*,
                                    DISPATCHER_CONTEXT* dispatch) {
    if (exception->ExceptionFlags & kUnwinding) return ExceptionContinueSearch;
    CONTEXT context;
    RtlUnwindEx(frame, afterHandler, exception,
                reinterpret_cast<void*>(std::uintptr_t{exception->ExceptionCode}), &context,
                dispatch->HistoryTable);
    return ExceptionContinueSearch;
}
}

__asm__(
    ".text\n"
    ".globl callUnderHandler\n"
    ".globl afterHandler\n"
    ".seh_proc callUnderHandler\n"
    "callUnderHandler:\n"
    "    subq $40, %rsp\n"
    "    .seh_stackalloc 40\n"
    "    .seh_handler handleInFrame, @except\n"
    "    .seh_endprologue\n"
    "    movq %rcx, %rax\n"
    "    movq %rdx, %rcx\n"
    "    call *%rax\n"
    "    xorl %eax, %eax\n"
    "afterHandler:\n"
    "    addq $40, %rsp\n"
    "    ret\n"
    ".seh_endproc\n");

DWORD exceptionEnding(const std::function<void()>& action) { return callUnderHandler(runFunction, &action); }

#endif

}  // namespace host
