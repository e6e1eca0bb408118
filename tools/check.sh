#!/bin/sh
# What the build service checks.
cd "$(dirname "$0")/.." && exec .ci/run
