#!/bin/sh
# WUXAgentControlPanel.sh -start | -stop | -restart
#
# Starts or stops the management agent; run as root by the control panel. Returns when the agent is
# in the state that was asked for. Starting what runs and stopping what is stopped are successes.
#
# Status: 0 done; 1 not done, with the reason on standard error; 64 wrong arguments. Never 126 or
# 127, with which pkexec reports its own failures.

# Nothing of the environment that pkexec passes on and none of the signals that the caller ignores
# reaches what follows.
if [ "${WUXAGENT_ENVIRONMENT-}" != clean ]; then
    exec /usr/bin/env -i --default-signal WUXAGENT_ENVIRONMENT=clean LC_ALL=C \
        PATH=/usr/sbin:/usr/bin:/sbin:/bin /bin/sh -- "$0" "$@"
fi
PATH=/usr/sbin:/usr/bin:/sbin:/bin
export PATH
unset WUXAGENT_ENVIRONMENT
set -u
umask 022
cd / || exit 1
exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-

short_name=WUXAgent
place=/Library/WUXAgent # root's alone
in_bundle=Contents/MacOS/WUXAgent
executable=${place}/WUXAgent.app/${in_bundle}
unit=wuxagent.service
lock=/run/WUXAgentControlPanel.lock # /run is root's alone, /run/lock is everybody's
lock_seconds=40
tick=0.1 # seconds; the numbers of ticks below are tenths of a second
term_ticks=100
kill_ticks=20
reaping_ticks=20
start_ticks=50

Complain() {
    printf 'WUXAgentControlPanel: %s\n' "$1" >&2
}

# ReadLine FILE: the first line of FILE in $line; fails if there is none (any more).
ReadLine() {
    line=
    { IFS= read -r line <"$1"; } 2>/dev/null
}

# OwnedByRoot PID: tells by the real and the effective user, since /proc/PID itself is root's for
# any process that keeps its memory to itself.
OwnedByRoot() {
    {
        while read -r key real effective rest; do
            if [ "${key}" = Uid: ]; then
                [ "${real} ${effective}" = "0 0" ]
                return
            fi
        done <"/proc/$1/status"
    } 2>/dev/null
    return 1
}

# IsAgent PID: whether PID is the agent at work. The short name alone would also fit a zombie (it has
# no exe link), another user's program, a child of the agent that has not yet executed its own
# program's name away, and an agent inside a container.
IsAgent() {
    ReadLine "/proc/$1/comm" && [ "${line}" = "${short_name}" ] || return 1
    OwnedByRoot "$1" || return 1 # before anything that costs a process: anybody can start many
    link=$(readlink "/proc/$1/exe") || return 1
    # An upgrade may have deleted the running program's file, or moved its bundle aside.
    case ${link% (deleted)} in
    "${place}"/*/"${in_bundle}") ;;
    *) return 1 ;;
    esac
    space=$(readlink "/proc/$1/ns/pid") || return 1
    [ "${space}" = "${own_space}" ]
}

# FindAgents: the PIDs of all agents at work in $agents.
FindAgents() {
    agents=
    for entry in /proc/[0-9]*; do
        if IsAgent "${entry#/proc/}"; then
            agents="${agents} ${entry#/proc/}"
        fi
    done
}

# What runs on after this script must not keep the lock's descriptor, which is 9.
Systemctl() {
    systemctl "$@" 9>&-
}

# LookUpUnit: the unit's load state in $state, not-found without systemd. A service manager that does
# not answer is not taken for one without the unit: it may yet start a second agent.
LookUpUnit() {
    state=not-found
    [ -d /run/systemd/system ] || return 0
    state=$(Systemctl show --property=LoadState --value "${unit}")
    if [ -z "${state}" ]; then
        Complain "the service manager does not answer"
        return 1
    fi
}

# UnitExists: whether there is one, be it masked or broken.
UnitExists() {
    [ "${state}" != not-found ]
}

UnitIsAtRest() {
    activity=$(Systemctl is-active "${unit}")
    [ "${activity}" = inactive ] || [ "${activity}" = failed ]
}

# AgentRuns: a unit may run it as another user than root, where only the service manager knows it.
AgentRuns() {
    FindAgents
    [ -n "${agents}" ] || { UnitExists && Systemctl is-active --quiet "${unit}"; }
}

# Tick: waits for one of the $ticks that are left; fails if none is.
Tick() {
    [ "${ticks}" -gt 0 ] || return 1
    ticks=$((ticks - 1))
    sleep "${tick}"
}

# StillListed PID...: whether any is in the process table by the agent's short name, as a zombie too.
# The panel goes by that name.
StillListed() {
    for pid in "$@"; do
        if ReadLine "/proc/${pid}/comm" && [ "${line}" = "${short_name}" ]; then
            return 0
        fi
    done
    return 1
}

# WaitUntilReaped PID...: whoever started an agent may take time to notice its end.
WaitUntilReaped() {
    ticks=${reaping_ticks}
    while StillListed "$@" && Tick; do :; done
}

# EndAgents SIGNAL TICKS: sends it to all agents, then to those that these forked on their way out;
# wakes those that are stopped. Adds their PIDs to $ended. Fails if one is at work after that time.
EndAgents() {
    ticks=$2
    while FindAgents && [ -n "${agents}" ]; do
        ended="${ended}${agents}"
        for pid in ${agents}; do
            if IsAgent "${pid}"; then
                { kill -s "$1" "${pid}" && kill -s CONT "${pid}"; } 2>/dev/null || :
            fi
        done
        for pid in ${agents}; do
            while IsAgent "${pid}" && Tick; do :; done
        done
        Tick || return 1 # a round that cost no time counts as well
    done
}

StopAgent() {
    # The service manager knows no unit that is broken and at rest.
    if UnitExists && ! said=$(Systemctl stop "${unit}" 2>&1) && ! UnitIsAtRest; then
        Complain "the service manager did not stop ${unit}: ${said}"
        return 1
    fi
    # Without a unit this is all; with one, agents that were started before there was one.
    ended=
    EndAgents TERM "${term_ticks}" || EndAgents KILL "${kill_ticks}" || :
    # shellcheck disable=SC2086 # a list of numbers
    WaitUntilReaped ${ended}
    if AgentRuns; then
        Complain "the agent does not end:${agents}"
        return 1
    fi
}

# BundleIsTrusted: whether nobody but root can change the agent's executable or put another in its
# place. No folder on the way, nor the file, may be a link or writable by others.
BundleIsTrusted() {
    path=${executable}
    kind='regular file'
    while :; do
        if ! found=$(stat -c '%u %a %F' -- "${path}" 2>/dev/null); then
            Complain "${path} is missing"
            return 1
        fi
        case ${found} in
        "0 "*[2367]" ${kind}" | "0 "*[2367][0-7]" ${kind}")
            Complain "${path} can be changed by others than root: not run"
            return 1
            ;;
        "0 "*" ${kind}" | "0 "*" regular empty file") ;;
        *)
            Complain "${path} is not root's own ${kind}: not run"
            return 1
            ;;
        esac
        [ "${path}" != / ] || break
        path=${path%/*}
        path=${path:-/}
        kind=directory
    done
    if ! [ -x "${executable}" ]; then
        Complain "${executable} cannot be executed"
        return 1
    fi
}

# DefaultLimits: what a daemon finds when the system starts it, as far as this process may have it.
# The script's own work needs them as well.
DefaultLimits() {
    for limit in core=0 cpu=unlimited data=unlimited fsize=unlimited as=unlimited stack=8388608 \
        nofile=1024; do
        prlimit --pid "$$" "--${limit}:" 2>/dev/null ||
            prlimit --pid "$$" "--${limit}" 2>/dev/null || :
    done
    renice -n 0 -p "$$" >/dev/null 2>&1 || :
    { echo 0 >/proc/self/oom_score_adj; } 2>/dev/null || :
}

# LaunchExecutable: starts the agent on its own; its PID in $launched.
LaunchExecutable() {
    /usr/bin/env -i --default-signal PATH="${PATH}" setsid "${executable}" \
        </dev/null >/dev/null 2>&1 9>&- &
    launched=$!
}

# HasEnded: true once the process that was started is a zombie or gone, or its unit at rest.
HasEnded() {
    if [ -n "${launched}" ]; then
        ! readlink "/proc/${launched}/exe" >/dev/null
        return
    fi
    UnitIsAtRest
}

# EndLaunched: ends what was started and has not become the agent, so that no start adds another one.
EndLaunched() {
    [ -n "${launched}" ] || return 0
    ticks=${kill_ticks}
    kill -s TERM -- "-${launched}" 2>/dev/null || :
    until HasEnded || ! Tick; do :; done
    kill -s KILL -- "-${launched}" 2>/dev/null || :
}

StartAgent() {
    launched=
    if AgentRuns; then
        return 0
    fi
    if UnitExists; then
        # Someone asks: it is no matter how often the unit was started of late.
        Systemctl reset-failed "${unit}" 2>/dev/null || :
        if ! Systemctl start "${unit}"; then
            Complain "the service manager did not start ${unit}"
            return 1
        fi
    else
        BundleIsTrusted || return 1
        LaunchExecutable
    fi
    ticks=${start_ticks}
    until AgentRuns; do
        # An agent may leave its work to a child: only with no agent at all has it failed.
        if HasEnded && ! AgentRuns; then
            Complain "the agent ended at once"
            return 1
        fi
        if ! Tick; then
            EndLaunched
            Complain "the agent has not come up"
            return 1
        fi
    done
    sleep 0.5
    if ! AgentRuns; then
        Complain "the agent ended at once"
        return 1
    fi
}

RestartAgent() {
    # What could not be started again is better left running.
    if ! UnitExists; then
        BundleIsTrusted || return 1
    elif [ "${state}" != loaded ]; then
        Complain "${unit} is ${state}: not restarted"
        return 1
    fi
    trap '' HUP INT TERM PIPE # once it stops the agent, it starts it again
    StopAgent && StartAgent
}

TakeLock() {
    # Nobody else may open the file: whoever can open it can lock it.
    if ! (umask 077 && : >>"${lock}"); then
        Complain "${lock} cannot be made"
        return 1
    fi
    exec 9>>"${lock}"
    if ! flock -w "${lock_seconds}" 9; then
        Complain "another start or stop of the agent takes too long"
        return 1
    fi
}

case "$#:${1-}" in
1:-start | 1:-stop | 1:-restart) ;;
*)
    echo "usage: WUXAgentControlPanel.sh -start | -stop | -restart" >&2
    exit 64
    ;;
esac
user=$(id -u)
if [ "${user}" != 0 ]; then
    Complain "only root can start and stop the agent"
    exit 1
fi
own_space=$(readlink /proc/self/ns/pid) || {
    Complain "/proc is not there"
    exit 1
}
DefaultLimits
TakeLock || exit 1
LookUpUnit || exit 1
case $1 in
-start) StartAgent ;;
-stop) StopAgent ;;
*) RestartAgent ;;
esac || exit 1
