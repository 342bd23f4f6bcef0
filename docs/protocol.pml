/*
 * The page protocol of docs/protocol.md as a model for spin: consoles and services on one page,
 * each killed at any step. script/check-model runs it in every configuration.
 *
 * The page is a header word, which moves whole, and three data cells, which are written and read
 * one at a time and in any order, as a copy of memory may do it. A cell holds the number of the
 * request or of the reply that it belongs to. Request and reply of one number differ in length, and
 * so do replies of neighbouring numbers, so that a length from another message shows.
 *
 * Promela's memory is sequentially consistent. That stands for the release store and the acquire
 * load of the header: in an undisturbed exchange they order each access to the data, and a process
 * that succeeds a killed one starts behind the kernel's record of its death. Where two processes
 * write at once, a processor may show more than the model does; a counterexample is real all the
 * same.
 *
 * A look at the header that finds nothing changes nothing, so the steps of waiting are left out: a
 * process blocks until the flag is there. A console that would wait for ever is a deadlock.
 *
 * A service that reads cells of different messages answers with reply 0. A real one decodes the
 * bytes as well as it can: it may refuse them, or carry out a command that nobody typed.
 *
 * What happens, by -D:
 *   EXCHANGES=n       exchanges of each console (2)
 *   CONSOLE_CRASH     console 1 is killed at any step; console 2 succeeds it
 *   SERVICE_CRASH     service 1 is killed at any step; service 2 succeeds it
 *   TWO_CONSOLES      consoles 1 and 2 run at once
 *   TWO_SERVICES      services 1 and 2 run at once
 *   NO_RESTART        nothing succeeds the killed service
 *   SPARE_REPLY       the service is not killed between its reply's first cell and its header
 *   IDLE_START        console 2 starts when no request is posted
 *   REFUSE_LEFTOVER   a service answers a request that it finds at its start with reply 0
 * What the order of the writes prevents:
 *   REQUEST_HEADER_FIRST, REPLY_HEADER_FIRST   the header is stored before the data
 *   SPLIT_HEADER                               the flags are stored, then the length
 *   KEEP_POSTED                                a reply leaves the request flag standing
 * What is asserted:
 *   CHECK_COMPLETE    a console takes all the cells of one reply, with its length
 *   CHECK_OWN         a console takes no reply to a request other than its last
 *   CHECK_REQUEST     a service takes all the cells of one request, with its length
 *   CHECK_ONCE        no request is carried out twice
 *   CHECK_SPOILT=n    at most n times a console takes anything but its own complete reply
 *   CHECK_FIRST_ONLY  where it does, it is console 2 in its first exchange
 *   CHECK_UNREACHED   the last console never ends with its own reply: must fail, else the
 *                     others prove nothing
 */

#ifndef EXCHANGES
#define EXCHANGES 2
#endif

#ifdef CONSOLE_CRASH
#define LAST_CONSOLE 2
#else
#define LAST_CONSOLE 1
#endif

#define CELLS 3
#define POSTED 1
#define READY 2
#ifdef KEEP_POSTED
#define REPLY_FLAGS (READY + POSTED)
#else
#define REPLY_FLAGS READY
#endif

/* The header word, and what it holds. */
#define HEADER(flags, length) ((flags) + 4 * (length))
#define IS_POSTED(word) ((word) & POSTED)
#define IS_READY(word) ((word) & READY)
#define LENGTH(word) ((word) / 4)

/* Cells. Requests are numbered from 1 on. Reply 0 is a status alone: the answer to no whole
 * request. Reply OLD is left from before the model begins. */
#define REPLY 16
#define OLD 15
#define REQUEST_LENGTH(id) (2 + (id) % 2)
#define REPLY_LENGTH(id) ((id) == 0 -> 1 : 3 - (id) % 2)

byte header;
byte data[CELLS];

/* Known to nobody in the system: for the crashes and the properties. */
byte condemned_console, condemned_service;
bool replying;         /* a reply has cells in the page but no header yet */
byte spoilt;
byte carried_out[16];  /* by request number */

/* Both copy the cells below `length`, with a bit of `todo` for each. */
inline write_cells(value, length) {
    todo = (1 << (length)) - 1;
    do
    :: d_step { todo & 1 -> data[0] = value; todo = todo - 1 }
    :: d_step { todo & 2 -> data[1] = value; todo = todo - 2 }
    :: d_step { todo & 4 -> data[2] = value; todo = todo - 4 }
    :: todo == 0 -> break
    od
}

inline read_cells(length) {
    todo = (1 << (length)) - 1;
    do
    :: d_step { todo & 1 -> copy[0] = data[0]; todo = todo - 1 }
    :: d_step { todo & 2 -> copy[1] = data[1]; todo = todo - 2 }
    :: d_step { todo & 4 -> copy[2] = data[2]; todo = todo - 4 }
    :: todo == 0 -> break
    od
}

inline post_request() {
#ifdef SPLIT_HEADER
    atomic { printf("console %d stores the flags of request %d\n", me, id);
             header = HEADER(POSTED, LENGTH(header)) };
#endif
    atomic { printf("console %d posts request %d, length %d\n", me, id, REQUEST_LENGTH(id));
             header = HEADER(POSTED, REQUEST_LENGTH(id)) }
}

inline make_reply_ready() {
#ifdef SPLIT_HEADER
    atomic { printf("service %d stores the flags of reply %d\n", me, id);
             header = HEADER(REPLY_FLAGS, LENGTH(header)) };
#endif
    atomic { printf("service %d makes reply %d ready, length %d\n", me, id, REPLY_LENGTH(id));
             header = HEADER(REPLY_FLAGS, REPLY_LENGTH(id));
             replying = false }
}

/* All cells of the copy are `value`, and `length` is the one that goes with it. */
#define IS_WHOLE(value, length, right) \
    ((length) == (right) && copy[0] == (value) && ((length) < 2 || copy[1] == (value)) && \
     ((length) < 3 || copy[2] == (value)))

inline print_cell(value) {
    if
    :: value >= REPLY && value != REPLY + OLD -> printf(" reply %d", value - REPLY)
    :: value == REPLY + OLD -> printf(" old reply")
    :: value == 0 -> printf(" nothing")
    :: value > 0 && value < REPLY -> printf(" request %d", value)
    fi
}

inline print_copy(length) {
    print_cell(copy[0]);
    if
    :: length > 1 -> printf(","); print_cell(copy[1])
    :: else -> skip
    fi;
    if
    :: length > 2 -> printf(","); print_cell(copy[2])
    :: else -> skip
    fi;
    printf("\n")
}

proctype Console(byte me) {
    byte id, first, seen, todo;
    byte copy[CELLS];
    bool complete, own;
    {
#ifdef IDLE_START
        me == 1 || !IS_POSTED(header);
#endif
        first = 1 + (me - 1) * EXCHANGES;
        id = first;
        do
        :: id < first + EXCHANGES ->
            printf("console %d writes request %d\n", me, id);
#ifdef REQUEST_HEADER_FIRST
            post_request();
#endif
            write_cells(id, REQUEST_LENGTH(id));
#ifndef REQUEST_HEADER_FIRST
            post_request();
#endif
            atomic { IS_READY(header) -> seen = header };
            read_cells(LENGTH(seen));
            atomic {
                printf("console %d takes for reply %d:", me, id);
                print_copy(LENGTH(seen));
                complete = copy[0] >= REPLY &&
                           IS_WHOLE(copy[0], LENGTH(seen), REPLY_LENGTH(copy[0] - REPLY));
                own = complete && copy[0] == REPLY + id;
                spoilt = spoilt + (own -> 0 : 1)
            };
#ifdef CHECK_COMPLETE
            assert(complete);
#endif
#ifdef CHECK_OWN
            assert(own || !complete || copy[0] == REPLY);
#endif
#ifdef CHECK_SPOILT
            assert(spoilt <= CHECK_SPOILT);
#endif
#ifdef CHECK_FIRST_ONLY
            assert(own || (me == 2 && id == first));
#endif
            id = id + 1
        :: else -> break
        od;
#ifdef CHECK_UNREACHED
        assert(me != LAST_CONSOLE || !own)
#endif
    } unless {
        atomic {
            condemned_console == me;
            printf("console %d is killed\n", me);
            run Console(me + 1)
        }
    }
}

proctype Service(byte me) {
    byte id, seen, todo;
    byte copy[CELLS];
    {
#ifdef REFUSE_LEFTOVER
        if
        :: IS_POSTED(header) ->
            printf("service %d refuses the request that it finds\n", me);
            id = 0;
            replying = true;
            write_cells(REPLY, REPLY_LENGTH(0));
            make_reply_ready()
        :: !IS_POSTED(header)
        fi;
#endif
end:    do
        :: atomic { IS_POSTED(header) -> seen = header };
            read_cells(LENGTH(seen));
            atomic {
                printf("service %d takes:", me);
                print_copy(LENGTH(seen));
                id = copy[0];
                if
                :: id > 0 && id < REPLY && IS_WHOLE(id, LENGTH(seen), REQUEST_LENGTH(id)) ->
                    carried_out[id] = carried_out[id] + 1
                :: else -> id = 0
                fi
            };
#ifdef CHECK_REQUEST
            assert(id != 0);
#endif
#ifdef CHECK_ONCE
            assert(carried_out[id] <= 1);
#endif
            printf("service %d writes reply %d\n", me, id);
#ifdef REPLY_HEADER_FIRST
            make_reply_ready();
#endif
            replying = true;
            write_cells(REPLY + id, REPLY_LENGTH(id));
#ifndef REPLY_HEADER_FIRST
            make_reply_ready()
#endif
        od
    } unless {
        atomic {
            condemned_service == me;
            printf("service %d is killed\n", me);
#ifndef NO_RESTART
            run Service(me + 1)
#endif
        }
    }
}

#ifdef CONSOLE_CRASH
active proctype ConsoleKiller() {
    condemned_console = 1
}
#endif

#ifdef SERVICE_CRASH
active proctype ServiceKiller() {
#ifdef SPARE_REPLY
    atomic { !replying -> condemned_service = 1 }
#else
    condemned_service = 1
#endif
}
#endif

init {
    atomic {
        /* A page is new, or holds the reply to an exchange long past. */
        if
        :: true
        :: data[0] = REPLY + OLD; data[1] = REPLY + OLD;
           header = HEADER(READY, REPLY_LENGTH(OLD))
        fi;
        run Service(1);
        run Console(1);
#ifdef TWO_SERVICES
        run Service(2);
#endif
#ifdef TWO_CONSOLES
        run Console(2)
#endif
    }
}
