# The entry table: the slots of all stubs, in the stubs' order. Each stub's unit adds its own slot.
        .section .arraddr, "aw", @progbits
        .p2align 3
        .globl  arraddr
        .hidden arraddr
        .type   arraddr, @object
arraddr:
        .section .note.GNU-stack, "", @progbits
