!value = $10
macro store(a)
¯ ld$808100
%store(!value)

%store(!value)
db" ,21,AB<a>
endmacro
o2g value808100
%store(!value)
db"dw La
