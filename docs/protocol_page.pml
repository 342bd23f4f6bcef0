/*
 * The page, the locks on its file and the steps that the processes of docs/protocol.pml are made
 * of. Each inline uses the names `me`, `id`, `seen`, `todo`, `copy` of the process that it is in.
 */

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

/* All cells of the copy are `value`, and `length` is the one that goes with it. */
#define IS_WHOLE(value, length, right) \
    ((length) == (right) && copy[0] == (value) && ((length) < 2 || copy[1] == (value)) && \
     ((length) < 3 || copy[2] == (value)))

byte header;
byte data[CELLS];

/* The number of the client, of the service that holds the lock on byte 0, on byte 1; 0 for none. */
byte turn, serving;

/* Clients: consoles are 1 and 2, tools 3 and 4. */
#define TOOL 3

/* Known to nobody in the system: for the crashes and the properties. */
byte condemned_client, condemned_service;
bool replying;         /* a reply has cells in the page but no header yet */
byte spoilt;
byte carried_out[16];  /* by request number */

#ifdef UNLOCKED_CONSOLE
#define TAKES_TURNS (me != 2)
#else
#define TAKES_TURNS true
#endif

inline print_me() {
    if
    :: me >= TOOL -> printf("tool %d", me - TOOL + 1)
    :: else -> printf("console %d", me)
    fi
}

/* `unsettled`: the request of a client that went away is still there, answered or not. */
inline begin_turn() {
    atomic {
        !TAKES_TURNS || turn == 0;
        if
        :: TAKES_TURNS -> turn = me
        :: else -> skip
        fi;
        unsettled = IS_POSTED(header)
    }
}

/* What the client does, and the kernel when it is killed. */
inline end_turn() {
    d_step {
        if
        :: turn == me -> turn = 0
        :: else -> skip
        fi
    }
}

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
    atomic { print_me(); printf(" stores the flags of request %d\n", id);
             header = HEADER(POSTED, LENGTH(header)) };
#endif
    atomic { print_me(); printf(" posts request %d, length %d\n", id, REQUEST_LENGTH(id));
             header = HEADER(POSTED, REQUEST_LENGTH(id)) }
}

inline write_request() {
    atomic { print_me(); printf(" writes request %d\n", id) };
#ifdef REQUEST_HEADER_FIRST
    post_request();
#endif
    write_cells(id, REQUEST_LENGTH(id));
#ifdef LOCK_LATE
    begin_turn();
#endif
#ifndef REQUEST_HEADER_FIRST
    post_request()
#endif
}

inline take_reply() {
#ifdef UNLOCK_EARLY
    end_turn();
#endif
    read_cells(LENGTH(seen));
    atomic {
        print_me();
        printf(" takes for reply %d:", id);
        print_copy(LENGTH(seen));
        complete = copy[0] >= REPLY &&
                   IS_WHOLE(copy[0], LENGTH(seen), REPLY_LENGTH(copy[0] - REPLY));
        own = complete && copy[0] == REPLY + id;
        spoilt = spoilt + (own -> 0 : 1)
    }
}

/* `may_be_wrong`: where a turn began over an unanswered request. */
inline check_reply(may_be_wrong) {
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
#ifdef CHECK_TURN
    assert(own || (unsettled && may_be_wrong));
#endif
#ifdef CHECK_TOOL
    assert(own || me < TOOL || !complete || copy[0] == REPLY);
#endif
    skip
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
