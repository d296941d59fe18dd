#!/bin/sh
# The free space of the file system that holds the platform, as the service pages show it.
df -h --output=avail /opt/Merivon | tail -n 1 | tr -d ' '
