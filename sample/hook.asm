; hook.asm: every 100 coins give an extra life (LoROM addresses)
lorom
!lives = $10                ; work RAM, reached through the direct page
!coins = $12

org $818010                 ; the main loop's "inc $0014 : nop"
    jsl Bonus

org $838000                 ; free space
Bonus:
    inc $0014               ; the frame count that the hook replaced
-   lda !coins
    cmp.w #100              ; the game runs with 16-bit registers: .w
    bcc +                   ; fewer than 100 coins left
    sbc.w #100
    sta !coins
    inc !lives
    bra -
+   rtl
