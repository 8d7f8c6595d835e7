#!/bin/bash
# Every sample that the documentation shows is the sample as it is, and every page of the reference has the members of
# its class, no others, with their declarations as the IDL has them.

exec "$(dirname "$0")/../../tools/docs_copies.sh"
