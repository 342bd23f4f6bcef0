# The console ends when its streams do; 124 would mean that it had to be stopped.
printf 'help\nq\n' | timeout 60 $KO >/dev/full; echo $?
printf 'help\nq\n' | timeout 60 $KO >&-; echo $?
timeout 60 $KO <&- >/dev/null; echo $?
timeout 60 $KO </dev/null >&- 2>&-; echo $?
yes help | timeout 60 $KO | head -n 3 >/dev/null; echo end
# expected:
# 0
# 0
# 0
# 0
# end
