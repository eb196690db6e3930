# String instructions and flag saves. They stand in assembler because a flag push in inline
# assembly would overwrite the caller's red zone. The direction flag is cleared for the work and
# left as it was found; everything else of the flags is the callee's to change.

        .text

# ownsZero_8u_repE9(dst, n)
        .p2align 4
        .globl  e9_ownsZero_8u_repE9
        .hidden e9_ownsZero_8u_repE9
        .type   e9_ownsZero_8u_repE9, @function
e9_ownsZero_8u_repE9:
        pushfq
        popq    %rdx
        movq    %rsi, %rcx
        xorl    %eax, %eax
        cld
        rep stosb
        testl   $0x400, %edx
        jz      1f
        std
1:      ret
        .size   e9_ownsZero_8u_repE9, . - e9_ownsZero_8u_repE9

# ownsCopy_8u_repE9(src, dst, n): the widest string move that brings both addresses to its own
# alignment at once.
        .p2align 4
        .globl  e9_ownsCopy_8u_repE9
        .hidden e9_ownsCopy_8u_repE9
        .type   e9_ownsCopy_8u_repE9, @function
e9_ownsCopy_8u_repE9:
        pushfq
        popq    %r11
        cld
        xchgq   %rdi, %rsi
        movl    %esi, %eax
        xorl    %edi, %eax
        testb   $7, %al
        jz      .Lby8
        testb   $3, %al
        jz      .Lby4
        testb   $1, %al
        jz      .Lby2
        movq    %rdx, %rcx
        rep movsb
        jmp     .Ldone

.Lby8:  testb   $1, %dil
        jz      1f
        movsb
        decq    %rdx
1:      testb   $2, %dil
        jz      1f
        movsw
        subq    $2, %rdx
1:      testb   $4, %dil
        jz      1f
        movsl
        subq    $4, %rdx
1:      movq    %rdx, %rcx
        shrq    $3, %rcx
        rep movsq
        testb   $4, %dl
        jz      .Ltail2
        movsl
        jmp     .Ltail2

.Lby4:  testb   $1, %dil
        jz      1f
        movsb
        decq    %rdx
1:      testb   $2, %dil
        jz      1f
        movsw
        subq    $2, %rdx
1:      movq    %rdx, %rcx
        shrq    $2, %rcx
        rep movsl
.Ltail2:
        testb   $2, %dl
        jz      .Ltail1
        movsw
        jmp     .Ltail1

.Lby2:  testb   $1, %dil
        jz      1f
        movsb
        decq    %rdx
1:      movq    %rdx, %rcx
        shrq    $1, %rcx
        rep movsw
.Ltail1:
        testb   $1, %dl
        jz      .Ldone
        movsb
.Ldone: testl   $0x400, %r11d
        jz      1f
        std
1:      ret
        .size   e9_ownsCopy_8u_repE9, . - e9_ownsCopy_8u_repE9

        .section .note.GNU-stack, "", @progbits
