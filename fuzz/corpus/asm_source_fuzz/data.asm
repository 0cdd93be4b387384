!value = $10
macro store(a)
  lda #<a>
endmacro
org $808100
%store(!value)
db 1,2,"AB" : dw Label : dl Label
Label: incbin "data.bin"
