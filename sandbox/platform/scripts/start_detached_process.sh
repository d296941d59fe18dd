#!/bin/sh
# Starts a program with its arguments so that it outlives the caller, and returns at once.
setsid "$@" < /dev/null > /dev/null 2>&1 &
