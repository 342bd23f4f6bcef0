# 100,000 commands, ten rows of 10 MB and a kilobyte of NUL bytes.
cd root/vendor/etc/atv/dbg
printf '[m]\r\ncommand=m\r\ninstruction=1\r\n' >mods.conf
{
    seq 100000 | sed 's/.*/[t]\ncommand=c&\nbelong module=m/'
    for _ in 1 2 3 4 5 6 7 8 9 10; do head -c 10000000 /dev/zero | tr '\0' x; echo; done
    head -c 1000 /dev/zero
} >cmds.conf
cd - >/dev/null
printf 'm\nhelp\nq\nq\n' | $KO | grep -c '^	c[0-9]*		$'
# expected:
# 100000
