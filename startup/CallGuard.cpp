#include "startup/CallGuard.h"

// With GCC on x64, catch (...) sees only exceptions that GCC itself has thrown. A frame with a handler of its own sees
// those of Visual C++, too: it is like that compiler's __try { function(context); } __except (<it is a C++ exception>)
// around the call, in that the system's own handler reads the table of what is guarded and unwinds to where it says.
// Everything else, GCC's exceptions included, passes through the frame.
#ifndef _MSC_VER
asm(R"(
  .text
  .globl sentiqCallInFrame
  .def sentiqCallInFrame; .scl 2; .type 32; .endef
  .seh_proc sentiqCallInFrame
sentiqCallInFrame:
  subq $40, %rsp
  .seh_stackalloc 40
  .seh_endprologue
  movq %rcx, %rax
  movq %rdx, %rcx
.LguardBegin:
  call *%rax
  nop
.LguardEnd:
  movl $1, %eax
.LguardReturn:
  addq $40, %rsp
  ret
.LguardCaught:
  xorl %eax, %eax
  jmp .LguardReturn
  .seh_handler __C_specific_handler, @except
  .seh_handlerdata
  .long 1
  .rva .LguardBegin, .LguardEnd, .LguardFilter, .LguardCaught
  .text
  .seh_endproc
.LguardFilter:
  movq (%rcx), %rax
  cmpl $0xE06D7363, (%rax)
  sete %al
  movzbl %al, %eax
  ret
)");
extern "C" bool sentiqCallInFrame(void (*function)(void* context), void* context);
#endif

namespace sentiq {

std::uint32_t callGuarded(void (*function)(void* context), void* context) {
  try {
#ifdef _MSC_VER
    function(context);
    return 0;
#else
    return sentiqCallInFrame(function, context) ? 0 : exceptionCaught;
#endif
  } catch (...) {
    return exceptionCaught;
  }
}

}  // namespace sentiq
