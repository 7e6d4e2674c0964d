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

app: app-message app-new app-dat-file \
		app-server app-client  \
		app-succeeded


app-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'App'  ***"
	echo " "



app-new:	app-tar app-owner \
		app-group \
		app-inst-files app-make



app-tar: app.tar
	echo "** extracting $(TAR_PATH)/app.tar to @DIR@/opt/app"
	cd @DIR@/opt/app; tar -xvpf $(TAR_PATH)/app.tar
	cd @DIR@/opt/app; rm -f $(TAR_PATH)/app.tar-contence


app.tar-contence: app.tar
	echo "** getting contence of $(TAR_PATH)/app.tar"
	tar -tf $(TAR_PATH)/app.tar | cut -f1 -d" " > $(TAR_PATH)/app.tar-contence


app-inst-files: app-inst-dir
	echo "** copying installation stuff to @DIR@/opt/app"
	diff ./morvane.rsc @DIR@/opt/app/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.rsc && \
	chgrp root @DIR@/opt/app/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/app/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.SunOS4 && \
	chgrp root @DIR@/opt/app/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/app/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.SunOS5 && \
	chgrp root @DIR@/opt/app/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/app/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/app && \
	chown root @DIR@/opt/app/Makefile && \
	chgrp root @DIR@/opt/app/Makefile  )
	diff ./app.descr @DIR@/opt/app/install/app.descr > /dev/null 2>&1 || \
	(cp -p ./app.descr @DIR@/opt/app/install && \
	chown root @DIR@/opt/app/install/app.descr && \
	chgrp root @DIR@/opt/app/install/app.descr  )


app-dat-file: app-inst-dir
	diff ./app.dat @DIR@/opt/app/install/app.dat > /dev/null 2>&1 || \
	(cp -p ./app.dat @DIR@/opt/app/install && \
	chown root @DIR@/opt/app/install/app.dat && \
	chgrp root @DIR@/opt/app/install/app.dat  )


app-inst-dir:
	if test -d @DIR@/opt/app/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/app'"; \
		mkdir @DIR@/opt/app/install; \
		chown root @DIR@/opt/app/install; \
		chgrp root @DIR@/opt/app/install; \
	fi

app-make @DIR@/opt/app/install/app.make:
	if test -f @DIR@/opt/app/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/app/install/app.make'"; \
		echo "include app.dat" > @DIR@/opt/app/install/app.make; \
		cat @DIR@/opt/app/install/Makefile >> @DIR@/opt/app/install/app.make; \
		rm -f @DIR@/opt/app/install/Makefile; \
		chown root @DIR@/opt/app/install/app.make; \
		chgrp root @DIR@/opt/app/install/app.make; \
	else \
		if test "$@" != "app-make"; then \
			echo "Makefile '@DIR@/opt/app/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


app-owner: app.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/app'"
	cd @DIR@/opt/app; chown root `cat $(TAR_PATH)/app.tar-contence`

app-group: app.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/app'"
	cd @DIR@/opt/app; chgrp root `cat $(TAR_PATH)/app.tar-contence`



app-server: @DIR@/opt/app/install/app.make
	echo "** making 'server' for 'App'"
	cd @DIR@/opt/app/install; $(MAKE) -f app.make server

app-client: @DIR@/opt/app/install/app.make
	echo "** making 'client' for 'App'"
	cd @DIR@/opt/app/install; $(MAKE) -f app.make client

app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


