# The page's path may be a link to a file elsewhere, but no loop, and its folder must be there.
rm -f root/data/vendor/.tv
: >elsewhere
ln -s "$PWD/elsewhere" root/data/vendor/.tv
$SERVICE >service.log &
until grep -q serving service.log; do sleep 0.01; done
printf 'aud\nsetvol 0 35\nq\nq\n' | $KO | grep volume
kill $!
rm root/data/vendor/.tv
ln -s .tv root/data/vendor/.tv
$KO </dev/null | tail -n 1
rm -r root/data/vendor
$KO </dev/null | tail -n 1
: >root/data/vendor
$KO </dev/null | tail -n 1
# expected:
# output:0	volume:35	
# can't open swap file root/data/vendor/.tv, errno = 40
# can't open swap file root/data/vendor/.tv, errno = 2
# can't open swap file root/data/vendor/.tv, errno = 20
