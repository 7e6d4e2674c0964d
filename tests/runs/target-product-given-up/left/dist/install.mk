# <141 generated head 1>
# <142 generated head 2>
#
# <143 generated head 3> @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= @DIR@/dist


install:        products

products:

#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


