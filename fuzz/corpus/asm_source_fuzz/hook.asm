lorom
org $808000
Main:
  lda #$0F
  sta $12
  jsl Sub
  bra Main
Sub:
  rep #$20 : lda.w #$1234 : rtl
