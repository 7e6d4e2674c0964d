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

products: base app

#############################################################################

base: base-message base-new base-dat-file \
		base-succeeded


base-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base'  ***"
	echo " "



base-new:	base-tar base-owner \
		base-group \
		base-inst-files base-make



base-tar: base.tar
	echo "** extracting $(TAR_PATH)/base.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/base.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/base.tar-contence


base.tar-contence: base.tar
	echo "** getting contence of $(TAR_PATH)/base.tar"
	tar -tf $(TAR_PATH)/base.tar | cut -f1 -d" " > $(TAR_PATH)/base.tar-contence


base-inst-files: base-inst-dir
	echo "** copying installation stuff to @DIR@/opt/base"
	diff ./morvane.rsc @DIR@/opt/base/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.rsc && \
	chgrp root @DIR@/opt/base/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/base/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS4 && \
	chgrp root @DIR@/opt/base/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/base/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS5 && \
	chgrp root @DIR@/opt/base/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/base/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/base && \
	chown root @DIR@/opt/base/Makefile && \
	chgrp root @DIR@/opt/base/Makefile  )
	diff ./base.descr @DIR@/opt/base/install/base.descr > /dev/null 2>&1 || \
	(cp -p ./base.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.descr && \
	chgrp root @DIR@/opt/base/install/base.descr  )


base-dat-file: base-inst-dir
	diff ./base.dat @DIR@/opt/base/install/base.dat > /dev/null 2>&1 || \
	(cp -p ./base.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.dat && \
	chgrp root @DIR@/opt/base/install/base.dat  )


base-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

base-make @DIR@/opt/base/install/base.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/base.make'"; \
		echo "include base.dat" > @DIR@/opt/base/install/base.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/base.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/base.make; \
		chgrp root @DIR@/opt/base/install/base.make; \
	else \
		if test "$@" != "base-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


base-owner: base.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/base.tar-contence`

base-group: base.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/base.tar-contence`



base-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

app: app-message app-new app-dat-file \
		app-program  \
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



app-program: @DIR@/opt/app/install/app.make
	echo "** making 'program' for 'App'"
	cd @DIR@/opt/app/install; $(MAKE) -f app.make program

app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


