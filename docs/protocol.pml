/*
 * The page protocol of docs/protocol.md as a model for spin: consoles, tools and services on one
 * page, each killed at any step. script/check-model runs it in every configuration.
 *
 * The page is a header word, which moves whole, and three data cells, which are written and read
 * one at a time and in any order, as a copy of memory may do it. A cell holds the number of the
 * request or of the reply that it belongs to. Request and reply of one number differ in length, and
 * so do replies of neighbouring numbers, so that a length from another message shows.
 *
 * A lock is the number of its holder. It is waited for without a limit and in no order, and is free
 * again in the same step in which its holder is killed, as the kernel does it. A tool that finds
 * the page in use until its timeout changes nothing, and neither does one that gives up before it
 * has posted: such a call is one that was not made. A service that finds its lock held ends; as it
 * may be started again at any time, it counts here as one that waits.
 *
 * Promela's memory is sequentially consistent. That models the release store and the acquire
 * load of the header: in an undisturbed exchange they order each access to the data, and a process
 * that succeeds another one, as the holder of its lock or when it was killed, starts after the
 * kernel's record of that. Where two processes write at once, a processor may show more than the
 * model does; a counterexample is real all the same.
 *
 * A poll that finds nothing changes nothing, so the steps of waiting are left out: a
 * process blocks until the flag is there. A console that would wait for ever is a deadlock.
 *
 * A service that reads cells of different messages answers with reply 0. A real one decodes the
 * bytes as well as it can: it may refuse them, or carry out a command that nobody typed.
 *
 * What happens, by -D:
 *   EXCHANGES=n       exchanges of each console and calls of each tool (2)
 *   CONSOLES=n        consoles that run at once, 0 to 2 (1)
 *   TOOLS=n           tools that run at once, 0 to 2 (0)
 *   TOOL_TIMEOUT      a tool may give up at any step between its request and the reply's copy
 *   FORCE             a tool posts without reading the header
 *   CONSOLE_CRASH     console 1 is killed at any step; console 2 succeeds it
 *   CLIENT_CRASH      any one of the consoles and tools is killed at any step
 *   SERVICE_CRASH     service 1 is killed at any step; service 2 succeeds it
 *   TWO_SERVICES      services 1 and 2 run at once
 *   NO_RESTART        nothing succeeds the killed service
 *   SPARE_REPLY       the service is not killed between its reply's first cell and its header
 *   IDLE_START        console 2 starts when no request is posted
 *   REFUSE_LEFTOVER   a service answers a request that it finds at its start with reply 0
 *   UNLOCKED_CONSOLE  console 2 does not lock
 *   UNLOCKED_SERVICES services do not lock
 * What the order of the steps prevents:
 *   REQUEST_HEADER_FIRST, REPLY_HEADER_FIRST   the header is stored before the data
 *   SPLIT_HEADER                               the flags are stored, then the length
 *   KEEP_POSTED                                a reply leaves the request flag standing
 *   LOCK_LATE                                  a client locks after its request's data
 *   UNLOCK_EARLY                               a client unlocks before it copies the reply
 * What is asserted:
 *   CHECK_COMPLETE    a client takes all the cells of one reply, with its length
 *   CHECK_OWN         a client takes no reply to a request other than its last
 *   CHECK_REQUEST     a service takes all the cells of one request, with its length
 *   CHECK_ONCE        no request is carried out twice
 *   CHECK_SPOILT=n    at most n times a client takes anything but its own complete reply
 *   CHECK_FIRST_ONLY  where it does, it is console 2 in its first exchange
 *   CHECK_TURN        where it does, it began its turn over an unanswered request, and is no tool
 *                     that reads the header
 *   CHECK_TOOL        a tool takes no complete reply to another request
 *   CHECK_UNREACHED=n client n never ends with its own reply, a tool that may find an abandoned
 *                     request never after one: must fail, else the others prove nothing
 */

#ifndef EXCHANGES
#define EXCHANGES 2
#endif
#ifndef CONSOLES
#define CONSOLES 1
#endif
#ifndef TOOLS
#define TOOLS 0
#endif

#include "protocol_page.pml"

proctype Console(byte me) {
    byte id, first, seen, todo;
    byte copy[CELLS];
    bool complete, own, unsettled;
    {
#ifdef IDLE_START
        me == 1 || !IS_POSTED(header);
#endif
        first = 1 + (me - 1) * EXCHANGES;
        id = first;
        do
        :: id < first + EXCHANGES ->
#ifndef LOCK_LATE
            begin_turn();
#endif
            write_request();
            atomic { IS_READY(header) -> seen = header };
            take_reply();
            check_reply(true);
            end_turn();
            id = id + 1
        :: else -> break
        od;
#ifdef CHECK_UNREACHED
        assert(me != CHECK_UNREACHED || !own)
#endif
    } unless {
        atomic {
            condemned_client == me;
            printf("console %d is killed\n", me);
            end_turn();
#ifdef CONSOLE_CRASH
            run Console(me + 1)
#endif
        }
    }
}

#ifdef FORCE
#define FORCED true
#else
#define FORCED false
#endif

#if (defined(CLIENT_CRASH) || defined(TOOL_TIMEOUT)) && !defined(FORCE)
#define REACHED (own && dropped)
#else
#define REACHED own
#endif

proctype Tool(byte me) {
    byte id, first, seen, todo;
    byte copy[CELLS];
    bool complete, own, unsettled, dropped;
    {
        first = 1 + (me - 1) * EXCHANGES;
        id = first;
        do
        :: id < first + EXCHANGES ->
#ifndef LOCK_LATE
            begin_turn();
#endif
            if
            :: FORCED || !unsettled
            :: atomic {
                   !FORCED && unsettled && !IS_POSTED(header) ->
                   dropped = true;
                   print_me();
                   printf(" drops the answer that nobody took\n")
               }
            fi;
            write_request();
            if
            :: atomic { IS_READY(header) -> seen = header };
               take_reply();
               check_reply(FORCED)
#ifdef TOOL_TIMEOUT
            :: atomic { print_me(); printf(" gives up\n") }
#endif
            fi;
            end_turn();
#ifdef CHECK_UNREACHED
            assert(me != CHECK_UNREACHED || !REACHED);
#endif
            own = false;
            id = id + 1
        :: else -> break
        od
    } unless {
        atomic {
            condemned_client == me;
            printf("tool %d is killed\n", me - TOOL + 1);
            end_turn()
        }
    }
}

proctype Service(byte me) {
    byte id, seen, todo;
    byte copy[CELLS];
end_idle:
    {
#ifndef UNLOCKED_SERVICES
        atomic { serving == 0 -> serving = me };
#endif
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
            serving = 0;
#ifndef NO_RESTART
            run Service(me + 1)
#endif
        }
    }
}

#ifdef CONSOLE_CRASH
active proctype ConsoleKiller() {
    condemned_client = 1
}
#endif

#ifdef CLIENT_CRASH
active proctype ClientKiller() {
    if
    :: CONSOLES > 0 -> condemned_client = 1
    :: CONSOLES > 1 -> condemned_client = 2
    :: TOOLS > 0 -> condemned_client = TOOL
    :: TOOLS > 1 -> condemned_client = TOOL + 1
    fi
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
#if CONSOLES > 0
        run Console(1);
#endif
#ifdef TWO_SERVICES
        run Service(2);
#endif
#if CONSOLES > 1
        run Console(2);
#endif
#if TOOLS > 0
        run Tool(TOOL);
#endif
#if TOOLS > 1
        run Tool(TOOL + 1);
#endif
    }
}
