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

products: app

#############################################################################

app: app-message app-dat-file \
		app-program  \
		app-succeeded


app-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'App'  ***"
	echo " "



app-dat-file: app-inst-dir
	diff ./app.dat @DIR@/dist/install/app.dat > /dev/null 2>&1 || \
	(cp -p ./app.dat @DIR@/dist/install && \
	chown root @DIR@/dist/install/app.dat && \
	chgrp root @DIR@/dist/install/app.dat  )


app-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown root @DIR@/dist/install; \
		chgrp root @DIR@/dist/install; \
	fi

app-make @DIR@/dist/install/app.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/app.make'"; \
		echo "include app.dat" > @DIR@/dist/install/app.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/app.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/app.make; \
		chgrp root @DIR@/dist/install/app.make; \
	else \
		if test "$@" != "app-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi




app-program: @DIR@/dist/install/app.make
	echo "** making 'program' for 'App'"
	cd @DIR@/dist/install; $(MAKE) -f app.make program

app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


