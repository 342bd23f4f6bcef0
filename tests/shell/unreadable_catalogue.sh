# A regular file whose first byte cannot be read.
ln -sf /proc/self/mem root/vendor/etc/atv/dbg/mods.conf
$KO </dev/null | sed -n 2,3p
# expected:
# file path error or open file failure
# ParseModules fail
