# guarded_call(function, context, uppers): calls function(context) with clean vector upper halves
# and stores the upper halves of all sixteen registers, as found behind the call, to uppers
# (16 times 16 bytes). Returns the flags register as found behind the call.
        .text
        .globl  guarded_call
        .type   guarded_call, @function
guarded_call:
        pushq   %rbx
        movq    %rdx, %rbx
        movq    %rdi, %rax
        movq    %rsi, %rdi
        vzeroupper
        call    *%rax
        pushfq
        popq    %rax
        cld
        .set    at, 0
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15
        vextractf128 $1, %ymm\n, at(%rbx)
        .set    at, at + 16
        .endr
        vzeroupper
        popq    %rbx
        ret
        .size   guarded_call, . - guarded_call
        .section .note.GNU-stack, "", @progbits
